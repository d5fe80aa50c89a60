/** The JSON objects of the server; docs/http-api.md describes their members. */

export const listNames = ["missed", "dialled", "received", "forwarded", "callbacks"] as const;
export type ListName = (typeof listNames)[number];

export interface Occurrence {
    number: string;
    connectedNumber: string;
    time: string;
    redirectingNumber: string;
    redirectingName: string;
    /** Minutes and seconds, "01:01". Missed calls have none. */
    duration?: string;
    lineKey?: string;
    completedElsewhere?: boolean;
    substituteNumber?: string;
    featureAccessCode?: string | boolean;
    forwardedToNumber?: string;
}

/** An entry of a list. Callbacks have the members of the last group instead of occurrences. */
export interface Entry {
    entryId: string;
    firstName: string;
    surname: string;
    number: string;
    time: string;

    uniqueId?: string;
    viewed?: boolean;
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

export interface Status {
    line: string;
    softwareType: string;
    switch: { connected: boolean; monitoring: boolean };
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
