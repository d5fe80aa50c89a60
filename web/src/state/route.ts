import { listNames, type ListName } from "../api/types";
import { Store } from "./Store";

export const views = [...listNames, "calls", "contacts", "times", "settings"] as const;
export type View = (typeof views)[number];

export const titles: Record<View, string> = {
    missed: "Missed",
    dialled: "Dialled",
    received: "Received",
    forwarded: "Forwarded",
    callbacks: "Callbacks",
    calls: "All calls",
    contacts: "Contacts",
    times: "Times",
    settings: "Settings",
};

/** The label of a list without a title above it. */
export function listLabel(list: ListName): string {
    return list === "callbacks" ? titles[list] : `${titles[list]} calls`;
}

export function isList(view: View): view is ListName {
    return (listNames as readonly string[]).includes(view);
}

/**
 * The view, the open entry and the filters in the address: "#/missed", "#/missed/KEY", "#/calls?since=7d". Bookmarks work, and the
 * browser's back button closes an entry: opening one adds a step to the history, moving on to another one does not, nor does a filter.
 */
export class Route extends Store {
    view: View = "missed";
    openKey: string | undefined;
    /** The part of the address after "?". */
    query = "";
    /** Set while the browser goes back, which is asynchronous. An entry opened meanwhile waits, or going back would close it. */
    private returning: { next?: string } | undefined;

    constructor() {
        super();
        this.follow();
        window.addEventListener("popstate", () => this.arrive());
        window.addEventListener("hashchange", () => this.follow());
    }

    openEntry(key: string): void {
        if (this.returning) {
            this.returning.next = key;
            return;
        }
        const address = `#/${this.view}/${encodeURIComponent(key)}`;
        if (this.openKey === undefined) {
            window.history.pushState({ opened: true }, "", address);
        } else {
            window.history.replaceState(window.history.state, "", address);
        }
        this.follow();
    }

    closeEntry(): void {
        if (this.openKey === undefined) {
            return;
        }
        this.openKey = undefined;
        if ((window.history.state as { opened?: boolean } | null)?.opened) {
            this.returning = {};
            window.history.back();
        } else {
            window.history.replaceState(null, "", `#/${this.view}`); // the page was loaded with this address
        }
        this.changed();
    }

    setQuery(query: string): void {
        window.history.replaceState(window.history.state, "", `#/${this.view}${query && `?${query}`}`);
        this.follow();
    }

    private arrive(): void {
        const next = this.returning?.next;
        this.returning = undefined;
        this.follow();
        if (next !== undefined) {
            this.openEntry(next);
        }
    }

    private follow(): void {
        const [, name, key, query = ""] = /^#\/?([^/?]*)(?:\/([^?]+))?(?:\?(.*))?/.exec(window.location.hash) ?? [];
        this.query = query;
        this.view = views.find((view) => view === name) ?? "missed";
        try {
            this.openKey = key && decodeURIComponent(key);
        } catch {
            this.openKey = undefined; // not an address of this page
        }
        this.changed();
    }
}
