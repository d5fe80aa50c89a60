import { api } from "../api/client";
import type { ListName } from "../api/types";
import type { Journal } from "./Journal";
import { Store } from "./Store";

const undoTime = 7000;

/**
 * Entries that the reader has deleted and may still get back. They are hidden at once; the server is asked when the time is over or the
 * page is left. Names are entry ids: an entry that gets a further call meanwhile has a new one, so it shows again and stays.
 */
export class Deletions extends Store {
    private readonly waiting = new Map<ListName, Set<string>>();
    private timer: number | undefined;

    constructor(private readonly journal: Journal) {
        super();
        window.addEventListener("pagehide", () => this.finish(true));
    }

    isHidden(list: ListName, entryId: string): boolean {
        return this.waiting.get(list)?.has(entryId) ?? false;
    }

    count(): number {
        return [...this.waiting.values()].reduce((sum, each) => sum + each.size, 0);
    }

    add(list: ListName, entryIds: string[]): void {
        const ids = this.waiting.get(list) ?? new Set<string>();
        entryIds.forEach((each) => ids.add(each));
        this.waiting.set(list, ids);
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
    }

    resume(): void {
        this.pause();
        if (this.waiting.size > 0) {
            this.timer = window.setTimeout(() => this.finish(false), undoTime);
        }
    }

    private finish(leaving: boolean): void {
        this.pause();
        for (const [list, ids] of this.waiting) {
            this.waiting.delete(list);
            this.journal.drop(list, ids);
            api.deleteEntries(list, [...ids], leaving).catch((error: unknown) => {
                this.journal.fail(error);
                this.journal.readAll();
            });
        }
        this.changed();
    }
}
