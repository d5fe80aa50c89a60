import type { Contact, ContactValues, ImportAnswer, ListAnswer, ListName, Quarter, Rejection, Status } from "./types";

/** The server refused, or (status 0) could not be reached. The message is for people. */
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

/** A file is sent as it is, with its own type. */
function content(body: unknown): RequestInit {
    if (body instanceof Blob || body === undefined) {
        return body ? { body } : {};
    }
    return { body: JSON.stringify(body), headers: { "Content-Type": "application/json" } };
}

/** `keepalive`: the request outlives the page when that is left. */
async function ask<Answer>(method: string, path: string, body?: unknown, keepalive = false): Promise<Answer> {
    let response: Response;
    try {
        response = await fetch(`/api/v1/${path}`, {
            method,
            keepalive,
            signal: AbortSignal.timeout(15_000),
            ...content(body),
        });
    } catch {
        throw new ApiError(0, "The journal cannot be reached.");
    }
    if (!response.ok) {
        const refused = (await response.json().catch(() => ({}))) as ErrorBody;
        throw new ApiError(response.status, refused.error?.message ?? `The journal answered ${response.status}.`, refused.rejected);
    }
    return (response.status === 204 ? undefined : await response.json()) as Answer;
}

/** Somebody else was quicker. */
function unlessGone(error: unknown): void {
    if (!(error instanceof ApiError && error.status === 404)) {
        throw error;
    }
}

export const api = {
    status: () => ask<Status>("GET", "status"),
    list: (name: ListName) => ask<ListAnswer>("GET", `lists/${name}`),
    /** Without ids all of them. Entries that have changed meanwhile are passed over by the server. */
    deleteEntries: (name: ListName, entryIds: string[] | undefined, keepalive: boolean) =>
        ask<void>("DELETE", `lists/${name}`, entryIds && { entryIds }, keepalive),
    markViewed: (entryIds: string[]) => ask<void>("POST", "lists/missed/viewed", { entryIds }),
    /** Of all calls that the database has; quarters without one are left out. */
    times: (from: Date) => ask<{ quarters: Quarter[] }>("GET", `times?from=${from.toISOString()}`),

    contacts: (search: string, limit: number) =>
        ask<{ total: number; contacts: Contact[] }>("GET", `contacts?limit=${limit}&search=${encodeURIComponent(search)}`),
    /** Whose number it is, in whatever spelling. */
    contactWith: async (number: string) =>
        (await ask<{ contacts: Contact[] }>("GET", `contacts?number=${encodeURIComponent(number)}`)).contacts[0],
    addContact: (values: ContactValues) => ask<Contact>("POST", "contacts", values),
    changeContact: (id: string, values: ContactValues) => ask<Contact>("PUT", `contacts/${encodeURIComponent(id)}`, values),
    importContacts: (format: "vcard" | "csv", text: string) =>
        ask<ImportAnswer>("POST", "contacts/import", new Blob([text], { type: `text/${format}` })),
    deleteContact: (id: string, keepalive: boolean) =>
        ask<void>("DELETE", `contacts/${encodeURIComponent(id)}`, undefined, keepalive).catch(unlessGone),

    settings: () => ask<Record<string, string>>("GET", "settings"),
    changeSetting: (key: string, value: string) => ask<Record<string, string>>("PUT", "settings", { [key]: value }),
};
