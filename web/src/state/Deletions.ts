import { api } from "../api/client";
import type { Entry, ListName } from "../api/types";
import { plural } from "../text/names";
import type { Failures } from "./Failures";
import type { Journal } from "./Journal";
import { Store } from "./Store";

export type DeletionScope = ListName | "contacts";

const undoTime = 7000;
/** A timer that is this late may have slept with the machine, and the event stream with it. */
const lateness = 2000;
/** If more deletions than this wait, the earlier ones are sent at once. */
const maxWaiting = 300;
/** On leaving a page, a browser sends at most 64 KiB of bodies, all requests together. */
const maxBytesOnLeave = 60_000;

/** `whole`: the whole list, including the calls whose entry has left it. */
interface Batch {
    ids: Set<string>;
    whole: boolean;
}

/**
 * Deleted entries and contacts that the user can still restore. They are hidden at once. The request is sent when the time for undo is
 * over or the user leaves the page; an entry that the server refuses to delete is shown again. Entries are identified by entry id: an
 * entry that gets a further call meanwhile has a new id, so it is shown again and kept.
 */
export class Deletions extends Store {
    /** The number of contacts that the server has deleted. */
    contactsDeleted = 0;

    private readonly waiting = new Map<DeletionScope, Batch>();
    /** Ids whose deletion was requested. Contacts stay here: the server never reuses their ids. */
    private readonly requested = new Map<DeletionScope, Set<string>>();
    private bytesLeft = maxBytesOnLeave;
    private timer: number | undefined;
    private due = Infinity;

    constructor(
        private readonly journal: Journal,
        private readonly failures: Failures,
    ) {
        super();
        // A slow browser may not finish the work after pagehide; a mobile one may not send beforeunload.
        window.addEventListener("beforeunload", () => this.sendAll());
        window.addEventListener("pagehide", () => this.sendAll());
    }

    isHidden(scope: DeletionScope, id: string): boolean {
        return (this.waiting.get(scope)?.ids.has(id) || this.requested.get(scope)?.has(id)) ?? false;
    }

    count(): number {
        return [...this.waiting.values()].reduce((sum, each) => sum + each.ids.size, 0);
    }

    /** The text of the undo bar. */
    summary(): string {
        const contacts = this.waiting.get("contacts")?.ids.size ?? 0;
        const entries = this.count() - contacts;
        const parts = [entries > 0 && plural(entries, "entry", "entries"), contacts > 0 && plural(contacts, "contact", "contacts")];
        const whole = [...this.waiting.values()].some((each) => each.whole) ? ", with all calls of the list" : "";
        return `${parts.filter(Boolean).join(" and ")} deleted${whole}`;
    }

    add(scope: DeletionScope, ids: readonly string[], whole = false): void {
        if (this.count() + ids.length > maxWaiting) {
            this.sendAll();
        }
        const batch = this.waiting.get(scope) ?? { ids: new Set(), whole };
        ids.forEach((each) => batch.ids.add(each));
        batch.whole ||= whole;
        this.waiting.set(scope, batch);
        this.resume();
        this.changed();
    }

    undo(): void {
        this.pause();
        this.waiting.clear();
        this.changed();
    }

    /** Stops the timer while the user is about to undo. */
    pause(): void {
        window.clearTimeout(this.timer);
        this.due = Infinity;
    }

    resume(): void {
        this.pause();
        if (this.waiting.size > 0) {
            this.due = Date.now() + undoTime;
            this.timer = window.setTimeout(() => this.sendAll(), undoTime);
        }
    }

    private sendAll(): void {
        const slept = Date.now() > this.due + lateness;
        this.pause();
        for (const [scope, batch] of this.waiting) {
            this.waiting.delete(scope);
            if (scope === "contacts") {
                batch.ids.forEach((id) => void this.send(scope, [id], () => api.deleteContact(id, true)));
            } else {
                void this.deleteEntries(scope, slept ? { ...batch, whole: false } : batch);
            }
        }
        this.changed();
    }

    private async deleteEntries(list: ListName, { ids, whole }: Batch): Promise<void> {
        // The user did not mean calls that came in meanwhile.
        const isGone = ({ entryId }: Entry) => ids.has(entryId) || this.isHidden(list, entryId);
        const all = whole && this.journal.isCurrent(list) && this.journal.entries(list).every(isGone);
        const named = [...ids];
        const bytes = all ? 0 : JSON.stringify(named).length + 20;
        const fits = bytes <= this.bytesLeft;
        this.bytesLeft -= fits ? bytes : 0;
        await this.send(list, named, () => api.deleteEntries(list, all ? undefined : named, fits));
        this.bytesLeft += fits ? bytes : 0;
    }

    private async send(scope: DeletionScope, ids: readonly string[], request: () => Promise<void>): Promise<void> {
        const requested = this.requested.get(scope) ?? new Set();
        this.requested.set(scope, requested);
        ids.forEach((each) => requested.add(each));
        try {
            await request();
            this.failures.clear("delete");
            if (scope === "contacts") {
                ++this.contactsDeleted;
                this.changed();
                return;
            }
            this.journal.removeDeleted(scope, new Set(ids));
        } catch (error) {
            const [one, many] = scope === "contacts" ? ["contact", "contacts"] : ["entry", "entries"];
            const back = ids.length === 1 ? "could not be deleted and is back" : "could not be deleted and are back";
            this.failures.report("delete", `${plural(ids.length, one, many)} ${back}`, error);
        }
        ids.forEach((each) => requested.delete(each));
        this.changed();
    }
}
