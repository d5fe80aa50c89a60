/** The JSON objects of the server; docs/http-api.md describes their members. */

export const callLists = ["missed", "dialled", "received", "forwarded"] as const;
export type CallList = (typeof callLists)[number];
export type ListName = CallList | "callbacks";

/** Why a call has another party than the one that was called. */
export type CallReason = "" | "transfer" | "forward-busy" | "forward-no-answer" | "forward-always" | "pick-up" | "completed-elsewhere" |
    "busy" | "rejected" | "unanswered" | "no-such-number" | "congestion";

export interface Call {
    id: number;
    /** The unique id of its entry; null if its entry has left the list. */
    uniqueId: string | null;
    list: CallList;
    direction: "incoming" | "outgoing";
    number: string;
    /** The number as people write it. */
    numberText: string;
    place: string | null;
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

/** A request to the switch to call back when a line is free. */
export interface CallbackRequest {
    entryId: string;
    displayName: string;
    number: string;
    numberText: string;
    time: string;
    type?: string;
    state?: string;
}

export interface LiveCall {
    callId: string;
    direction: "incoming" | "outgoing";
    state: "offered" | "ringing" | "calling" | "connected" | "held";
    number: string;
    numberText: string;
    place: string | null;
    displayName: string;
    since: string;
    connectedSince: string | null;
}

/** A line that the access key may see. */
export interface Line {
    device: string;
    /** Whose telephone it is; may be empty. */
    name: string;
    /** Missed calls that are new. */
    unviewed: number;
}

export interface Status {
    line: string;
    scope: "metrics" | "read" | "write" | "admin";
    softwareType: string;
    switch: { connected: boolean; monitoring: boolean };
    /** The SIP telephone that the program runs. */
    telephone: { state: "ready" | "registering" | "not-registered" | "not-running"; reason: string } | null;
    callControl?: boolean;
    lists: Record<ListName, { total: number; unviewed: number }>;
}

export interface Party {
    number: string;
    numberText: string;
    place: string | null;
    displayName: string;
    note: string;
    calls: number;
    firstCall: string | null;
    lastCall: string | null;
    contact: Contact | null;
    totals: { calls: number; missed: number; dialled: number; received: number; forwarded: number; talkTime: number };
}

export interface Counts {
    calls: number;
    answered: number;
    missed: number;
    completedElsewhere: number;
    dialled: number;
    forwarded: number;
    talkTime: number;
    longest: number;
    callBackTime: number | null;
}

export interface CountedGroup extends Counts {
    key: string;
    displayName?: string;
    number?: string;
    numberText: string;
    place: string | null;
}

export interface Statistics {
    totals: Counts;
    groups: CountedGroup[];
    topParties: CountedGroup[];
}

/** The number of calls in each list that began in a quarter of an hour. */
export type Quarter = { time: string } & Record<CallList, number>;

export const numberFields = ["office", "mobile", "private", "office2"] as const;
export const contactFields = ["firstName", "surname", "company", ...numberFields, "email"] as const;
export type ContactField = (typeof contactFields)[number];
export type ContactValues = Record<ContactField, string>;
/** `numberTexts` are the numbers as people write them. */
export type Contact = ContactValues & { id: string; shared: boolean; picture?: string; numberTexts: Record<(typeof numberFields)[number], string> };

/** The result of an import. `read` minus the other counts were skipped; the notes may be cut off. */
export interface ImportResponse {
    read: number;
    added: number;
    changed: number;
    unchanged: number;
    skipped: { line: number; text: string }[];
    remarks: { line: number; text: string }[];
}

/** An entry of a list, as events have it. */
export interface Entry {
    uniqueId?: string;
    displayName: string;
    number: string;
    numberText: string;
    viewed?: boolean;
    /** The newest call first. */
    occurrences?: readonly { completedElsewhere?: boolean }[];
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

/** A setting of the journal or of the telephone; null if it was never set. */
export interface ManagedSetting {
    key: string;
    of: "journal" | "phone";
    value: string | null;
}
