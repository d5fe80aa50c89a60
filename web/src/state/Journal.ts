import { api } from "../api/client";
import { listNames, type Change, type Entry, type ListName } from "../api/types";
import { titleOf } from "../text/names";
import { actions, applied } from "./entries";
import type { Failures } from "./Failures";
import { Store } from "./Store";

/** One list. `lateChanges` came while the list was being read and may be newer than the response. */
interface ListState {
    entries: Entry[];
    read: boolean;
    reading: boolean;
    again: boolean;
    failed: boolean;
    lateChanges: Change[];
}

/** The five lists, kept up to date by the event stream. */
export class Journal extends Store {
    /** Live-region text for screen readers, and its serial number: the same text may come twice. */
    announcement = { text: "", count: 0 };
    /** True while the event stream is open. Set by LineState. */
    live = false;

    private readonly lists = new Map<ListName, ListState>(
        listNames.map((name) => [name, { entries: [], read: false, reading: false, again: false, failed: false, lateChanges: [] }]),
    );
    private counting: number | undefined;

    constructor(private readonly failures: Failures) {
        super();
    }

    entries(name: ListName): readonly Entry[] {
        return this.stateOf(name).entries;
    }

    isRead(name: ListName): boolean {
        return this.stateOf(name).read;
    }

    /** True if the list is up to date as far as the page can tell. */
    isCurrent(name: ListName): boolean {
        const state = this.stateOf(name);
        return this.live && state.read && !state.reading && !state.failed;
    }

    readFailed(): void {
        listNames.filter((name) => this.stateOf(name).failed).forEach((name) => void this.read(name));
    }

    readAll(): void {
        listNames.forEach((name) => void this.read(name));
    }

    onChange(name: ListName, change: Change): void {
        const state = this.stateOf(name);
        if (state.reading) {
            state.lateChanges.push(change);
        }
        this.apply(name, state, change);
        if (name === "missed" && change.item && !change.item.viewed && (change.action === actions.added || change.action === actions.updated)) {
            this.announcement = { text: `Missed call from ${titleOf(change.item)}`, count: this.announcement.count + 1 };
        }
        this.changedSoon();
    }

    /**
     * Reads the missed calls again if the count differs. When another client views entries, only this count is sent; it also precedes a
     * change of the list.
     */
    checkUnviewedCount(count: number): void {
        window.clearTimeout(this.counting);
        this.counting = window.setTimeout(() => {
            // A list that is being read may arrive in its earlier state.
            const { entries, reading } = this.stateOf("missed");
            if (reading || entries.filter((each) => each.viewed === false).length !== count) {
                void this.read("missed");
            }
        }, 200);
    }

    markViewed(entryIds: string[]): void {
        const state = this.stateOf("missed");
        const wanted = new Set(entryIds);
        state.entries = state.entries.map((each) => (wanted.has(each.entryId) ? { ...each, viewed: true } : each));
        this.changed();
        api.markViewed(entryIds).then(
            () => this.failures.clear("viewed"),
            (error: unknown) => {
                this.failures.reportOnce("viewed", "Not marked as viewed", error);
                void this.read("missed");
            },
        );
    }

    /** Removes entries that the server has deleted; its event repeats that. */
    removeDeleted(name: ListName, entryIds: ReadonlySet<string>): void {
        const state = this.stateOf(name);
        state.entries = state.entries.filter((each) => !entryIds.has(each.entryId));
        this.changed();
    }

    private stateOf(name: ListName): ListState {
        return this.lists.get(name) as ListState;
    }

    private apply(name: ListName, state: ListState, change: Change): void {
        const next = applied(state.entries, change);
        if (next) {
            state.entries = next;
        } else {
            void this.read(name);
        }
    }

    private async read(name: ListName): Promise<void> {
        const state = this.stateOf(name);
        state.again = state.reading;
        if (state.reading) {
            return;
        }
        state.reading = true;
        state.lateChanges = [];
        try {
            const response = await api.list(name);
            state.entries = response.items;
            state.read = true;
            state.reading = false;
            state.failed = false;
            this.failures.clear(`read ${name}`);
            state.lateChanges.forEach((change) => this.apply(name, state, change));
        } catch (error) {
            state.reading = false;
            this.failures.reportOnce(`read ${name}`, `The list “${name}” could not be read`, error);
            state.failed = true;
        }
        this.changed();
        if (state.again) {
            state.again = false;
            await this.read(name);
        }
    }
}
