import type { Contact, ContactValues, ListAnswer, ListName, Rejection, Status } from "./types";

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

async function ask<Answer>(method: string, path: string, body?: unknown, keepalive = false): Promise<Answer> {
    let response: Response;
    try {
        response = await fetch(`/api/v1/${path}`, {
            method,
            keepalive,
            signal: keepalive ? null : AbortSignal.timeout(15_000),
            ...(body === undefined ? {} : { body: JSON.stringify(body), headers: { "Content-Type": "application/json" } }),
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

export const api = {
    status: () => ask<Status>("GET", "status"),
    list: (name: ListName) => ask<ListAnswer>("GET", `lists/${name}`),
    /** `leaving`: the request has to outlive the page. Entries that have changed meanwhile are passed over by the server. */
    deleteEntries: (name: ListName, entryIds: string[], leaving: boolean) => ask<void>("DELETE", `lists/${name}`, { entryIds }, leaving),
    markViewed: (entryIds: string[]) => ask<void>("POST", "lists/missed/viewed", { entryIds }),

    contacts: (search: string, limit: number) =>
        ask<{ total: number; contacts: Contact[] }>("GET", `contacts?limit=${limit}&search=${encodeURIComponent(search)}`),
    addContact: (values: ContactValues) => ask<Contact>("POST", "contacts", values),
    changeContact: (id: string, values: ContactValues) => ask<Contact>("PUT", `contacts/${encodeURIComponent(id)}`, values),
    deleteContact: (id: string) => ask<void>("DELETE", `contacts/${encodeURIComponent(id)}`),

    settings: () => ask<Record<string, string>>("GET", "settings"),
    changeSetting: (key: string, value: string) => ask<Record<string, string>>("PUT", "settings", { [key]: value }),
};
