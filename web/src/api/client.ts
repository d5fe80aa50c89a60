import type { CallPage, Contact, ContactValues, ImportResponse, ListResponse, ListName, Quarter, Rejection, Status } from "./types";

/** The server refused the request, or was not reachable (status 0). The message is for the user. */
export class ApiError extends Error {
    constructor(
        readonly status: number,
        message: string,
        readonly rejected: Record<string, Rejection> = {},
    ) {
        super(message);
    }
}

interface ErrorBody {
    error?: { message?: string };
    rejected?: Record<string, Rejection>;
}

/** The body and its type: a Blob unchanged, everything else as JSON. */
function content(body: unknown): RequestInit {
    if (body instanceof Blob || body === undefined) {
        return body ? { body } : {};
    }
    return { body: JSON.stringify(body), headers: { "Content-Type": "application/json" } };
}

/** Sends a request. With `keepalive` it continues after the user has left the page. Throws ApiError. */
async function request<Result>(method: string, path: string, body?: unknown, keepalive = false, limit = 15_000): Promise<Result> {
    let response: Response;
    try {
        response = await fetch(`/api/v1/${path}`, {
            method,
            keepalive,
            signal: AbortSignal.timeout(limit),
            ...content(body),
        });
    } catch {
        throw new ApiError(0, "The journal cannot be reached.");
    }
    if (!response.ok) {
        const refused = (await response.json().catch(() => ({}))) as ErrorBody;
        throw new ApiError(response.status, refused.error?.message ?? `The journal returned the status ${response.status}.`, refused.rejected);
    }
    return (response.status === 204 ? undefined : await response.json()) as Result;
}

/** Ignores "not found": another client has deleted it already. */
function ignoreNotFound(error: unknown): void {
    if (!(error instanceof ApiError && error.status === 404)) {
        throw error;
    }
}

export const api = {
    status: () => request<Status>("GET", "status"),
    list: (name: ListName) => request<ListResponse>("GET", `lists/${name}`),
    /** Deletes all entries if there are no ids. The server skips entries that have changed meanwhile. */
    deleteEntries: (name: ListName, entryIds: string[] | undefined, keepalive: boolean) =>
        request<void>("DELETE", entryIds ? `lists/${name}` : `lists/${name}?all=true`, entryIds && { entryIds }, keepalive),
    markViewed: (entryIds: string[]) => request<void>("POST", "lists/missed/viewed", { entryIds }),
    markUnviewed: (entryIds: string[]) => request<void>("POST", "lists/missed/unviewed", { entryIds }),
    /** Counts all calls in the database; quarters of an hour without a call are left out. */
    times: (from: Date) => request<{ quarters: Quarter[] }>("GET", `times?from=${from.toISOString()}`),

    /** The next calls of a selection. The query has the filters (`callQuery`). */
    calls: (query: string, limit: number, cursor: string | null) =>
        request<CallPage>("GET", `calls?${query}&limit=${limit}${cursor ? `&cursor=${encodeURIComponent(cursor)}` : ""}`),
    countCalls: async (query: string) => (await request<{ totals: { calls: number } }>("GET", `statistics?limit=1&${query}`)).totals.calls,
    /** Returns the number of deleted calls. A million takes minutes. */
    deleteCalls: async (query: string) =>
        (await request<{ deleted: number }>("DELETE", `calls?${query}`, undefined, false, 600_000)).deleted,
    deleteCall: (id: number) => request<void>("DELETE", `calls/${id}`).catch(ignoreNotFound),

    party: (number: string) => request<{ note: string }>("GET", `parties/${encodeURIComponent(number)}`),
    setNote: (number: string, note: string) => request<unknown>("PUT", `parties/${encodeURIComponent(number)}`, { note }, true),

    contacts: (search: string, limit: number) =>
        request<{ total: number; contacts: Contact[] }>("GET", `contacts?limit=${limit}&search=${encodeURIComponent(search)}`),
    /** The contact that has this number, in any spelling. */
    contactWith: async (number: string) =>
        (await request<{ contacts: Contact[] }>("GET", `contacts?number=${encodeURIComponent(number)}`)).contacts[0],
    addContact: (values: ContactValues) => request<Contact>("POST", "contacts", values),
    changeContact: (id: string, values: ContactValues) => request<Contact>("PUT", `contacts/${encodeURIComponent(id)}`, values),
    importContacts: (format: "vcard" | "csv", text: string) =>
        request<ImportResponse>("POST", "contacts/import", new Blob([text], { type: `text/${format}` })),
    deleteContact: (id: string, keepalive: boolean) =>
        request<void>("DELETE", `contacts/${encodeURIComponent(id)}`, undefined, keepalive).catch(ignoreNotFound),

    settings: () => request<Record<string, string>>("GET", "settings"),
    changeSetting: (key: string, value: string) => request<Record<string, string>>("PUT", "settings", { [key]: value }),
};
