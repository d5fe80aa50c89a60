import { api, ApiError } from "../api/client";
import type { Call } from "../api/types";
import { callQuery, type CallFilters } from "./callFilters";
import type { Failures } from "./Failures";
import { Store } from "./Store";

const pageSize = 50;
const largestPage = 1000;
/** The time from a change to the refresh, in ms: changes often come in bursts. */
const refreshPause = 500;

/** The calls that the view "All calls" shows: the newest ones that the filters find, read page by page. */
export class CallHistory extends Store {
    calls: readonly Call[] = [];
    isRead = false;
    /** The server's message about a filter that it cannot read. */
    refusal = "";

    /** Undefined while no view shows the calls. */
    private filters: CallFilters | undefined;
    private next: string | null = null;
    /** The number of the latest reading; the responses to earlier ones are ignored. */
    private latest = 0;
    private reading = false;
    /** True if more calls were asked for while others were read. */
    private wantsMore = false;
    private failed = false;
    private refreshTimer: number | undefined;

    constructor(private readonly failures: Failures) {
        super();
    }

    get hasMore(): boolean {
        return this.next !== null;
    }

    show(filters: CallFilters): void {
        this.filters = filters;
        this.wantsMore = false;
        void this.read([], null, pageSize);
    }

    hide(): void {
        this.filters = undefined;
        this.calls = [];
        this.next = null;
        this.isRead = this.reading = this.wantsMore = this.failed = false;
        ++this.latest;
    }

    readMore(): void {
        if (this.reading) {
            this.wantsMore = true;
        } else if (this.next) {
            void this.read(this.calls, this.next, pageSize);
        }
    }

    /** Reads the shown calls again, those of all pages. */
    refreshSoon(): void {
        this.refreshTimer ??= window.setTimeout(() => {
            this.refreshTimer = undefined;
            if (this.reading) {
                this.refreshSoon();
            } else {
                void this.read([], null, Math.max(pageSize, this.calls.length));
            }
        }, refreshPause);
    }

    readFailed(): void {
        if (this.failed) {
            this.refreshSoon();
        }
    }

    /** Reads `count` further calls after the `kept` ones, which end at the cursor. */
    private async read(kept: readonly Call[], cursor: string | null, count: number): Promise<void> {
        if (!this.filters) {
            return;
        }
        const reading = ++this.latest;
        const query = callQuery(this.filters);
        const calls = [...kept];
        const wanted = kept.length + count;
        this.reading = true;
        try {
            do {
                const page = await api.calls(query, Math.min(largestPage, wanted - calls.length), cursor);
                if (reading !== this.latest) {
                    return;
                }
                calls.push(...page.items);
                cursor = page.next;
            } while (cursor && calls.length < wanted);
            this.calls = calls;
            this.next = cursor;
            this.isRead = true;
            this.failed = false;
            this.refusal = "";
            this.failures.clear("calls");
        } catch (error) {
            if (reading !== this.latest) {
                return;
            }
            if (error instanceof ApiError && error.status === 400) {
                this.refusal = error.message;
                this.calls = [];
                this.next = null;
            } else {
                this.failed = true;
                this.failures.reportOnce("calls", "The calls could not be read", error);
            }
        }
        this.reading = false;
        this.changed();
        if (this.wantsMore) {
            this.wantsMore = false;
            this.readMore();
        }
    }
}
