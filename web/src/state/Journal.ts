import { api, ApiError } from "../api/client";
import { listNames, type Change, type Entry, type ListName } from "../api/types";
import { actions, applied } from "./entries";
import { Store } from "./Store";

/** One list as the page has it. `late`: the changes that came while the list was being read; they may be newer than the answer. */
interface Held {
    entries: Entry[];
    read: boolean;
    reading: boolean;
    again: boolean;
    late: Change[];
}

/** The five lists, kept up to date by the event stream. */
export class Journal extends Store {
    /** The server answered that it does not know this browser. */
    signedOut = false;
    failure = "";
    /** The last thing that happened, for those who hear the page. */
    news = "";

    private readonly lists = new Map<ListName, Held>(
        listNames.map((name) => [name, { entries: [], read: false, reading: false, again: false, late: [] }]),
    );
    private counting: number | undefined;

    entries(name: ListName): readonly Entry[] {
        return this.held(name).entries;
    }

    isRead(name: ListName): boolean {
        return this.held(name).read;
    }

    unviewed(): number {
        return this.entries("missed").filter((each) => each.viewed === false).length;
    }

    readAll(): void {
        listNames.forEach((name) => void this.read(name));
    }

    take(name: ListName, change: Change): void {
        const held = this.held(name);
        if (held.reading) {
            held.late.push(change);
        }
        this.apply(name, held, change);
        if (name === "missed" && change.item && (change.action === actions.added || change.action === actions.updated)) {
            this.news = `Missed call from ${`${change.item.firstName} ${change.item.surname}`.trim() || change.item.number || "unknown"}`;
        }
        this.changed();
    }

    /** Only the number of unviewed entries is told when somebody looks at them elsewhere. It also comes just before the change of a list. */
    takeUnviewedCount(count: number): void {
        window.clearTimeout(this.counting);
        this.counting = window.setTimeout(() => {
            if (this.unviewed() !== count) {
                void this.read("missed");
            }
        }, 200);
    }

    markViewed(entryIds: string[]): void {
        const held = this.held("missed");
        const wanted = new Set(entryIds);
        held.entries = held.entries.map((each) => (wanted.has(each.entryId) ? { ...each, viewed: true } : each));
        this.changed();
        api.markViewed(entryIds).catch((error: unknown) => {
            this.fail(error);
            void this.read("missed");
        });
    }

    /** What the server has deleted; its event says the same again. */
    drop(name: ListName, entryIds: ReadonlySet<string>): void {
        const held = this.held(name);
        held.entries = held.entries.filter((each) => !entryIds.has(each.entryId));
        this.changed();
    }

    fail(error: unknown): void {
        this.signedOut ||= error instanceof ApiError && error.status === 401;
        this.failure = error instanceof ApiError ? error.message : String(error);
        this.changed();
    }

    dismissFailure(): void {
        this.failure = "";
        this.changed();
    }

    private held(name: ListName): Held {
        return this.lists.get(name) as Held;
    }

    private apply(name: ListName, held: Held, change: Change): void {
        const next = applied(held.entries, change);
        if (next) {
            held.entries = next;
        } else {
            void this.read(name);
        }
    }

    private async read(name: ListName): Promise<void> {
        const held = this.held(name);
        held.again = held.reading;
        if (held.reading) {
            return;
        }
        held.reading = true;
        held.late = [];
        try {
            const answer = await api.list(name);
            held.entries = answer.items;
            held.read = true;
            held.reading = false;
            this.failure = "";
            held.late.forEach((change) => this.apply(name, held, change));
        } catch (error) {
            held.reading = false;
            // Without a connection the page says so at its top, and reads again when there is one.
            if (!(error instanceof ApiError && error.status === 0)) {
                this.fail(error);
            }
        }
        this.changed();
        if (held.again) {
            held.again = false;
            await this.read(name);
        }
    }
}
