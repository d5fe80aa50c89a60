import { language } from "../text/language";
import { ignoreNotFound, request } from "./request";
import type {
    CallbackRequest,
    CallPage,
    Contact,
    ContactValues,
    ImportResponse,
    Line,
    LiveCall,
    ManagedSetting,
    Party,
    Quarter,
    Statistics,
    Status,
} from "./types";

const encoded = encodeURIComponent;

/** The query with the language in which the server names places. */
function placed(query: URLSearchParams): URLSearchParams {
    const all = new URLSearchParams(query);
    all.set("language", language.value);
    return all;
}

/** The ids of the contacts that all lines share; these are changed without naming a line. */
const shared = new Set<string>();

function noted(contacts: Contact[]): Contact[] {
    contacts.filter((contact) => contact.shared).forEach((contact) => shared.add(contact.id));
    return contacts;
}

function contactPath(id: string): string {
    return `${shared.has(id) ? "/" : ""}contacts/${encoded(id)}`;
}

/** The zone of the days and times in a query. */
export const zone = Intl.DateTimeFormat().resolvedOptions().timeZone;

export const api = {
    status: () => request<Status>("GET", "status"),
    /** The first `limit` lines that the access key may see, and the number of all. */
    lines: (limit: number) => request<{ total: number; lines: Line[] }>("GET", `lines?limit=${limit}`),
    signIn: (token: string) => request<void>("POST", "session", { token }),
    signOut: () => request<void>("DELETE", "session"),

    /** A page of the calls that a query selects. */
    calls: (query: URLSearchParams) => request<CallPage>("GET", `calls?${placed(query)}`),
    deleteCall: (id: number, keepalive: boolean) => request<void>("DELETE", `calls/${id}`, undefined, { keepalive }).catch(ignoreNotFound),
    /** Returns the number of deleted calls. A million takes minutes. */
    deleteCalls: async (query: URLSearchParams) =>
        (await request<{ deleted: number }>("DELETE", `calls?${query}`, undefined, { limit: 600_000 })).deleted,
    statistics: (query: URLSearchParams) => request<Statistics>("GET", `statistics?${placed(query)}`),
    times: (from: Date) => request<{ quarters: Quarter[] }>("GET", `times?from=${from.toISOString()}`),
    /** Both take unique ids of entries of the list of missed calls. */
    markSeen: (entryIds: readonly string[]) => request<void>("POST", "lists/missed/viewed", { entryIds }),
    markNew: (entryIds: readonly string[]) => request<void>("POST", "lists/missed/unviewed", { entryIds }),

    callbackRequests: async () => (await request<{ items: CallbackRequest[] }>("GET", "lists/callbacks")).items,
    deleteCallbackRequest: (entryId: string, keepalive: boolean) =>
        request<void>("DELETE", "lists/callbacks", { entryIds: [entryId] }, { keepalive }),

    liveCalls: async () => (await request<{ calls: LiveCall[] }>("GET", `live-calls?language=${language.value}`)).calls,
    placeCall: (number: string, emergency: boolean) => request<unknown>("POST", "calls", emergency ? { number, emergency } : { number }),
    answerCall: (callId: string) => request<void>("POST", "live-calls/" + encoded(callId) + "/answer"),
    hangUp: (callId: string) => request<void>("DELETE", `live-calls/${encoded(callId)}`).catch(ignoreNotFound),

    party: async (number: string) => {
        const party = await request<Party>("GET", `parties/${encoded(number)}?language=${language.value}`);
        noted(party.contact ? [party.contact] : []);
        return party;
    },
    setNote: (number: string, note: string) => request<unknown>("PUT", `parties/${encoded(number)}`, { note }, { keepalive: true }),

    contacts: async (search: string, limit: number) => {
        const page = await request<{ total: number; contacts: Contact[] }>("GET", `contacts?limit=${limit}&search=${encoded(search)}`);
        noted(page.contacts);
        return page;
    },
    /** The contact that has this number, in any spelling. */
    contactWith: async (number: string) =>
        noted((await request<{ contacts: Contact[] }>("GET", `contacts?number=${encoded(number)}`)).contacts)[0],
    addContact: (values: ContactValues) => request<Contact>("POST", "contacts", values),
    changeContact: (id: string, values: ContactValues) => request<Contact>("PUT", contactPath(id), values),
    importContacts: (file: Blob) => request<ImportResponse>("POST", "contacts/import", file, { limit: 600_000 }),
    deleteContact: (id: string, keepalive: boolean) => request<void>("DELETE", contactPath(id), undefined, { keepalive }).catch(ignoreNotFound),

    settings: () => request<Record<string, string>>("GET", "settings"),
    changeSetting: (key: string, value: string) => request<Record<string, string>>("PUT", "settings", { [key]: value }),
    managedSettings: async () => (await request<{ settings: ManagedSetting[] }>("GET", "management")).settings,
    changeManagedSetting: (key: string, value: string) => request<unknown>("PUT", `management/${encoded(key)}`, { value }),
};
