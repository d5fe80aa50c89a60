import { api } from "../api/client";
import { listNames, type Change, type Entry, type ListName } from "../api/types";
import { titleOf } from "../text/names";
import { actions, applied, keyOf, withViewed } from "./entries";
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
    /** Keys of missed entries that were marked as new again. They stay new until they are opened or get a further call. */
    private readonly keptNew = new Set<string>();

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
        if (name === "missed" && change.item && !change.item.viewed && !this.isKeptNew(change.item) && (change.action === actions.added || change.action === actions.updated)) {
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
        state.entries = withViewed(state.entries, entryIds, true);
        this.changed();
        api.markViewed(entryIds).then(
            () => this.failures.clear("viewed"),
            (error: unknown) => {
                this.failures.reportOnce("viewed", "Not marked as viewed", error);
                state.entries = withViewed(state.entries, entryIds, false); // not "marked as new again"
                void this.read("missed");
            },
        );
    }

    markNew(entry: Entry): void {
        const state = this.stateOf("missed");
        this.replaceEntries(state, withViewed(state.entries, [entry.entryId], false));
        this.changed();
        api.markUnviewed([entry.entryId]).then(
            () => this.failures.clear("new"),
            (error: unknown) => {
                this.failures.report("new", "Not marked as new", error);
                void this.read("missed");
            },
        );
    }

    /** True if only opening the entry, or a further call, ends its mark as new. */
    isKeptNew(entry: Entry): boolean {
        return this.keptNew.has(keyOf(entry));
    }

    onOpened(entry: Entry): void {
        this.keptNew.delete(keyOf(entry));
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

    /** Also finds the entries that were marked as new again, here or by another client: the number of their calls is unchanged. */
    private replaceEntries(state: ListState, entries: Entry[]): void {
        const before = new Map(state.entries.map((each) => [keyOf(each), each]));
        for (const entry of entries) {
            const { viewed, calls } = before.get(keyOf(entry)) ?? {};
            if (viewed && entry.viewed === false && calls === entry.calls) {
                this.keptNew.add(keyOf(entry));
            } else if (entry.viewed || calls !== entry.calls) {
                this.keptNew.delete(keyOf(entry));
            }
        }
        state.entries = entries;
    }

    private apply(name: ListName, state: ListState, change: Change): void {
        const next = applied(state.entries, change);
        if (next) {
            this.replaceEntries(state, next);
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
            this.replaceEntries(state, response.items);
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
