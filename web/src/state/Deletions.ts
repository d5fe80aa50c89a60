import { api } from "../api/client";
import type { Entry, ListName } from "../api/types";
import { plural } from "../text/names";
import type { Failures } from "./Failures";
import type { Journal } from "./Journal";
import { Store } from "./Store";

export type Place = ListName | "contacts";

const undoTime = 7000;
/** A timer as late as this may have slept with the machine, and the event stream with it. */
const lateness = 2000;
/** With more than this, what was deleted before becomes final at once. */
const mostWaiting = 300;
/** A browser that leaves a page still sends bodies of 64 KiB, all requests together. */
const mostLeaving = 60_000;

/** `whole`: all that the list holds, what is older than the page shows included. */
interface Batch {
    ids: Set<string>;
    whole: boolean;
}

/**
 * What the reader has deleted and may still get back: entries, contacts. It is hidden at once; the server is asked when the time is over or
 * the page is left, and what it refuses shows again. Entries are named by their entry ids: one that gets a further call meanwhile has a new
 * id, so it shows again and stays.
 */
export class Deletions extends Store {
    /** Contacts that the server has deleted. */
    contactsGone = 0;

    private readonly waiting = new Map<Place, Batch>();
    /** What the server was asked to delete. Contacts stay here: their ids are never used again. */
    private readonly asked = new Map<Place, Set<string>>();
    private room = mostLeaving;
    private timer: number | undefined;
    private due = Infinity;

    constructor(
        private readonly journal: Journal,
        private readonly failures: Failures,
    ) {
        super();
        // A slow browser may not come to the end of what happens after pagehide; a telephone may not tell beforeunload.
        window.addEventListener("beforeunload", () => this.finish());
        window.addEventListener("pagehide", () => this.finish());
    }

    isHidden(place: Place, id: string): boolean {
        return (this.waiting.get(place)?.ids.has(id) || this.asked.get(place)?.has(id)) ?? false;
    }

    count(): number {
        return [...this.waiting.values()].reduce((sum, each) => sum + each.ids.size, 0);
    }

    /** What may be undone, for people. */
    told(): string {
        const contacts = this.waiting.get("contacts")?.ids.size ?? 0;
        const entries = this.count() - contacts;
        const told = [entries > 0 && plural(entries, "entry", "entries"), contacts > 0 && plural(contacts, "contact", "contacts")];
        const older = [...this.waiting.values()].some((each) => each.whole) ? ", and all older ones that are not shown" : "";
        return `${told.filter(Boolean).join(" and ")} deleted${older}`;
    }

    add(place: Place, ids: readonly string[], whole = false): void {
        if (this.count() + ids.length > mostWaiting) {
            this.finish();
        }
        const batch = this.waiting.get(place) ?? { ids: new Set(), whole };
        ids.forEach((each) => batch.ids.add(each));
        batch.whole ||= whole;
        this.waiting.set(place, batch);
        this.resume();
        this.changed();
    }

    undo(): void {
        this.pause();
        this.waiting.clear();
        this.changed();
    }

    /** While somebody is about to undo, time stands still. */
    pause(): void {
        window.clearTimeout(this.timer);
        this.due = Infinity;
    }

    resume(): void {
        this.pause();
        if (this.waiting.size > 0) {
            this.due = Date.now() + undoTime;
            this.timer = window.setTimeout(() => this.finish(), undoTime);
        }
    }

    private finish(): void {
        const slept = Date.now() > this.due + lateness;
        this.pause();
        for (const [place, batch] of this.waiting) {
            this.waiting.delete(place);
            if (place === "contacts") {
                batch.ids.forEach((id) => void this.ask(place, [id], () => api.deleteContact(id, true)));
            } else {
                void this.deleteEntries(place, slept ? { ...batch, whole: false } : batch);
            }
        }
        this.changed();
    }

    private async deleteEntries(list: ListName, { ids, whole }: Batch): Promise<void> {
        // A call that came in meanwhile was not meant.
        const isGone = ({ entryId }: Entry) => ids.has(entryId) || this.isHidden(list, entryId);
        const all = whole && this.journal.isCurrent(list) && this.journal.entries(list).every(isGone);
        const named = [...ids];
        const bytes = all ? 0 : JSON.stringify(named).length + 20;
        const fits = bytes <= this.room;
        this.room -= fits ? bytes : 0;
        await this.ask(list, named, () => api.deleteEntries(list, all ? undefined : named, fits));
        this.room += fits ? bytes : 0;
    }

    private async ask(place: Place, ids: readonly string[], request: () => Promise<void>): Promise<void> {
        const asked = this.asked.get(place) ?? new Set();
        this.asked.set(place, asked);
        ids.forEach((each) => asked.add(each));
        try {
            await request();
            this.failures.settle("delete");
            if (place === "contacts") {
                ++this.contactsGone;
                this.changed();
                return;
            }
            this.journal.drop(place, new Set(ids));
        } catch (error) {
            const [one, many] = place === "contacts" ? ["contact", "contacts"] : ["entry", "entries"];
            const back = ids.length === 1 ? "could not be deleted and is back" : "could not be deleted and are back";
            this.failures.tell("delete", `${plural(ids.length, one, many)} ${back}`, error);
        }
        ids.forEach((each) => asked.delete(each));
        this.changed();
    }
}
