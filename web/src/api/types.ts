/** The JSON objects of the server; docs/http-api.md describes their members. */

export const listNames = ["missed", "dialled", "received", "forwarded", "callbacks"] as const;
export type ListName = (typeof listNames)[number];

export interface Occurrence {
    number: string;
    connectedNumber: string;
    time: string;
    redirectingNumber: string;
    redirectingName: string;
    /** Missed calls have none. */
    durationSeconds?: number;
    endApproximate: boolean;
    lineKey?: string;
    completedElsewhere?: boolean;
    substituteNumber?: string;
    featureAccessCode?: string | boolean;
    forwardedToNumber?: string;
}

/** An entry of a list. Callbacks have the members of the last group instead of those before it. */
export interface Entry {
    entryId: string;
    /** The name as filed. */
    firstName: string;
    surname: string;
    /** The name of the contact that has the number now, else the name as filed. */
    displayName: string;
    number: string;
    time: string;

    uniqueId?: string;
    viewed?: boolean;
    /** The number of all calls; `occurrences` are the newest ten. */
    calls?: number;
    occurrences?: Occurrence[];

    numberType?: string;
    type?: string;
    state?: string;
    deviceId?: string;
}

export interface ListResponse {
    list: ListName;
    total: number;
    unviewed: number;
    items: Entry[];
}

/** Why a call has another party than the one that was called. */
export type CallReason = "" | "transfer" | "forward-busy" | "forward-no-answer" | "forward-always" | "pick-up" | "completed-elsewhere" |
    "busy" | "rejected" | "unanswered" | "no-such-number" | "congestion";

/** A call of the history, which keeps more calls than the entries of the lists show. */
export interface Call {
    id: number;
    /** The unique id of its entry; null if its entry has left the list. */
    uniqueId: string | null;
    list: Exclude<ListName, "callbacks">;
    number: string;
    /** The name as filed. */
    name: string;
    displayName: string;
    connectedNumber: string | null;
    connectedName: string | null;
    redirectingNumber: string | null;
    redirectingName: string | null;
    reason: CallReason;
    start: string;
    answered: string | null;
    ended: string | null;
    /** Seconds. */
    duration: number;
    endApproximate: boolean;
    lineKey: string;
    viewed: boolean;
    calledBackAt: string | null;
}

/** `next` is the cursor of the next page; null on the last one. */
export interface CallPage {
    items: Call[];
    next: string | null;
}

export interface Status {
    line: string;
    softwareType: string;
    switch: { connected: boolean; monitoring: boolean };
    /** The SIP telephone that the program runs. */
    telephone: { state: "ready" | "registering" | "not-registered" | "not-running"; reason: string } | null;
    /** The number of live calls. */
    calls: number;
}

export const numberFields = ["office", "mobile", "private", "office2"] as const;
export const contactFields = ["firstName", "surname", "company", ...numberFields, "email"] as const;
export type ContactField = (typeof contactFields)[number];
export type ContactValues = Record<ContactField, string>;
export type Contact = ContactValues & { id: string };

/** The result of an import. `read` minus the other counts were skipped; the notes may be cut off. */
export interface ImportResponse {
    read: number;
    added: number;
    changed: number;
    unchanged: number;
    skipped: { line: number; text: string }[];
    remarks: { line: number; text: string }[];
}

/** The number of calls in each list that began in a quarter of an hour. */
export interface Quarter {
    time: string;
    missed: number;
    dialled: number;
    received: number;
    forwarded: number;
}

export interface Change {
    action: number;
    entryId: string;
    item: Entry | null;
}

export interface Rejection {
    code: number;
    text: string;
}
