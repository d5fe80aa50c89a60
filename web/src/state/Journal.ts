import { api } from "../api/client";
import { listNames, type Change, type Entry, type ListName } from "../api/types";
import { titleOf } from "../text/names";
import { actions, applied } from "./entries";
import type { Failures } from "./Failures";
import { Store } from "./Store";

/** One list as the page has it. `late`: the changes that came while the list was being read; they may be newer than the answer. */
interface Held {
    entries: Entry[];
    read: boolean;
    reading: boolean;
    again: boolean;
    failed: boolean;
    late: Change[];
}

/** The five lists, kept up to date by the event stream. */
export class Journal extends Store {
    /** The last thing that happened, for those who hear the page, and how many there were: the same may happen twice. */
    news = { text: "", count: 0 };
    /** Whether changes come; LineState says so. */
    live = false;

    private readonly lists = new Map<ListName, Held>(
        listNames.map((name) => [name, { entries: [], read: false, reading: false, again: false, failed: false, late: [] }]),
    );
    private counting: number | undefined;

    constructor(private readonly failures: Failures) {
        super();
    }

    entries(name: ListName): readonly Entry[] {
        return this.held(name).entries;
    }

    isRead(name: ListName): boolean {
        return this.held(name).read;
    }

    /** Whether the list is, as far as can be known here, the server's. */
    isCurrent(name: ListName): boolean {
        const held = this.held(name);
        return this.live && held.read && !held.reading && !held.failed;
    }

    readFailed(): void {
        listNames.filter((name) => this.held(name).failed).forEach((name) => void this.read(name));
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
        if (name === "missed" && change.item && !change.item.viewed && (change.action === actions.added || change.action === actions.updated)) {
            this.news = { text: `Missed call from ${titleOf(change.item)}`, count: this.news.count + 1 };
        }
        this.changedSoon();
    }

    /** Only the number of unviewed entries is told when somebody looks at them elsewhere. It also comes just before the change of a list. */
    takeUnviewedCount(count: number): void {
        window.clearTimeout(this.counting);
        this.counting = window.setTimeout(() => {
            // A list that is just being read may come as it was before.
            const { entries, reading } = this.held("missed");
            if (reading || entries.filter((each) => each.viewed === false).length !== count) {
                void this.read("missed");
            }
        }, 200);
    }

    markViewed(entryIds: string[]): void {
        const held = this.held("missed");
        const wanted = new Set(entryIds);
        held.entries = held.entries.map((each) => (wanted.has(each.entryId) ? { ...each, viewed: true } : each));
        this.changed();
        api.markViewed(entryIds).then(
            () => this.failures.settle("viewed"),
            (error: unknown) => {
                this.failures.tellOnce("viewed", "Not marked as viewed", error);
                void this.read("missed");
            },
        );
    }

    /** What the server has deleted; its event says the same again. */
    drop(name: ListName, entryIds: ReadonlySet<string>): void {
        const held = this.held(name);
        held.entries = held.entries.filter((each) => !entryIds.has(each.entryId));
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
            held.failed = false;
            this.failures.settle(`read ${name}`);
            held.late.forEach((change) => this.apply(name, held, change));
        } catch (error) {
            held.reading = false;
            this.failures.tellOnce(`read ${name}`, `The list “${name}” could not be read`, error);
            held.failed = true;
        }
        this.changed();
        if (held.again) {
            held.again = false;
            await this.read(name);
        }
    }
}
