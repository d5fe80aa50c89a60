import { batch, signal } from "@preact/signals";
import { api, zone } from "../api/client";
import { ApiError } from "../api/request";
import type { Call, CallPage } from "../api/types";
import { t } from "../text/language";
import { dayStart, isoDay } from "../text/times";
import { reportOnce, succeeded } from "./failures";
import { queryOf, type Filters } from "./filters";

const pageSize = 100;
const earliestPage = 20;
const largestPage = 1000;
/** The time from a change to the refresh, in ms: changes often come in bursts. */
const refreshPause = 400;

/** The calls that a refresh reads again: the newest ones, or all that are shown. */
export type Depth = "newest" | "all";

/** True if the first call stands above the second one. */
function isNewer(one: Call, other: Call): boolean {
    return one.start > other.start || (one.start === other.start && one.id > other.id);
}

/**
 * Calls that filters select, newest first, read page by page as they are needed: older ones at the end, and newer ones at the begin if
 * the user has jumped to a day. A refresh keeps what is shown and puts changes in.
 */
export class CallFeed {
    readonly calls = signal<readonly Call[]>([]);
    readonly isRead = signal(false);
    /** True while calls are read that the user waits for. */
    readonly isReading = signal(false);
    readonly hasOlder = signal(false);
    readonly hasNewer = signal(false);
    /** True if the user has jumped to a day before all calls; the earliest ones are shown. */
    readonly isBeforeFirst = signal(false);
    /** The server's message about a filter that it cannot read. */
    readonly refusal = signal("");

    private filters: Filters = {};
    /** The end of the day that was jumped to. */
    private anchor: { until: string; tz: string } | undefined;
    private older: string | null = null;
    /** The number of the latest opening; responses to requests before it are ignored. */
    private opening = 0;
    private failed = false;
    private refreshing = false;
    private wanted: Depth | undefined;
    private timer: number | undefined;

    /** Shows the calls that the filters select, from the end of the day `at` back if it is given. */
    open(filters: Filters, at?: Date): void {
        ++this.opening;
        this.filters = filters;
        this.older = null;
        batch(() => {
            this.hasNewer.value = at !== undefined;
            this.hasOlder.value = this.isReading.value = this.isBeforeFirst.value = false;
        });
        this.anchor = at ? { until: isoDay(dayStart(at, 1)), tz: zone } : undefined;
        void this.read();
    }

    close(): void {
        ++this.opening;
        window.clearTimeout(this.timer);
        this.timer = this.wanted = undefined;
    }

    readOlder(): void {
        if (this.older && !this.isReading.value) {
            void this.read();
        }
    }

    /** Reads a page of the calls after the newest one that is shown. */
    async readNewer(): Promise<void> {
        const newest = this.calls.value[0];
        if (!newest || !this.hasNewer.value || this.isReading.value) {
            return;
        }
        await this.request({ ...this.filters, since: newest.start }, { sort: "start", limit: String(pageSize) }, ({ items, next }) => {
            const known = new Set(this.calls.value.map(({ id }) => id));
            const found = items.filter(({ id }) => !known.has(id)).reverse();
            this.calls.value = [...found, ...this.calls.value];
            this.hasNewer.value = next !== null && found.length > 0;
        });
    }

    refreshSoon(depth: Depth): void {
        this.wanted = this.wanted === "all" ? "all" : depth;
        this.timer ??= window.setTimeout(() => {
            this.timer = undefined;
            const now = this.wanted ?? "newest";
            this.wanted = undefined;
            if (this.isReading.value || this.refreshing) {
                this.refreshSoon(now);
            } else {
                void this.refresh(now);
            }
        }, refreshPause);
    }

    retry(): void {
        if (this.failed) {
            this.refreshSoon("all");
        }
    }

    /** Changes shown calls at once, before the server reports the change. */
    update(change: (call: Call) => Call): void {
        this.calls.value = this.calls.value.map(change);
    }

    remove(ids: ReadonlySet<number>): void {
        this.calls.value = this.calls.value.filter(({ id }) => !ids.has(id));
    }

    private async read(): Promise<void> {
        const cursor = this.older;
        const page = { limit: String(pageSize), ...this.anchor, ...(cursor && { cursor }) };
        const opening = this.opening;
        let isEmpty = false;
        await this.request(this.filters, page, ({ items, next }) => {
            isEmpty = items.length === 0;
            this.calls.value = cursor ? [...this.calls.value, ...items] : items;
            this.older = next;
            this.hasOlder.value = next !== null;
            this.isRead.value = true;
        });
        if (isEmpty && this.anchor && !cursor && opening === this.opening) {
            await this.readEarliest();
        }
    }

    /** Few calls, so that the earliest one is near. */
    private async readEarliest(): Promise<void> {
        await this.request(this.filters, { sort: "start", limit: String(earliestPage) }, ({ items, next }) => {
            this.calls.value = [...items].reverse();
            this.hasNewer.value = next !== null;
            this.isBeforeFirst.value = items.length > 0;
        });
    }

    private async request(filters: Filters, parameters: Record<string, string>, take: (page: CallPage) => void): Promise<void> {
        const opening = this.opening;
        const query = queryOf(filters);
        Object.entries(parameters).forEach(([name, value]) => query.set(name, value));
        this.isReading.value = true;
        try {
            const page = await api.calls(query);
            if (opening === this.opening) {
                batch(() => {
                    take(page);
                    this.isReading.value = false;
                    this.refusal.value = "";
                });
                this.failed = false;
                succeeded("calls");
            }
        } catch (error) {
            if (opening === this.opening) {
                this.isReading.value = false;
                this.fail(error);
            }
        }
    }

    private fail(error: unknown): void {
        if (error instanceof ApiError && error.status === 400) {
            batch(() => {
                this.refusal.value = error.message;
                this.calls.value = [];
                this.hasOlder.value = this.hasNewer.value = false;
            });
            return;
        }
        this.failed = true;
        reportOnce("calls", () => t().errors.calls, error);
    }

    /** Reads the newest calls or all shown ones again and puts them in place of the calls of the same period. */
    private async refresh(depth: Depth): Promise<void> {
        if (this.hasNewer.value && depth === "newest") {
            return; // the newest calls are not shown
        }
        const opening = this.opening;
        const wanted = depth === "all" ? Math.max(pageSize, this.calls.value.length) : Math.min(largestPage, Math.max(pageSize, this.calls.value.length));
        const read: Call[] = [];
        let cursor: string | null = null;
        this.refreshing = true;
        try {
            do {
                const query = queryOf(this.filters);
                query.set("limit", String(Math.min(largestPage, wanted - read.length)));
                this.boundAbove(query);
                if (cursor) {
                    query.set("cursor", cursor);
                }
                const page = await api.calls(query);
                read.push(...page.items);
                cursor = page.next;
            } while (cursor && read.length < wanted && opening === this.opening);
            if (opening === this.opening) {
                this.replace(read, cursor);
                this.failed = false;
                succeeded("calls");
            }
        } catch (error) {
            if (opening === this.opening) {
                this.fail(error);
            }
        }
        this.refreshing = false;
    }

    /** After a jump, the calls that are shown end with the newest one of them, not with the newest one of all. */
    private boundAbove(query: URLSearchParams): void {
        const newest = this.calls.value[0];
        if (this.hasNewer.value && newest) {
            query.set("until", new Date(new Date(newest.start).getTime() + 1000).toISOString().replace(/\.\d+/, ""));
            query.set("tz", zone);
        }
    }

    private replace(read: readonly Call[], cursor: string | null): void {
        const last = read[read.length - 1];
        const known = new Set(this.calls.value.map(({ id }) => id));
        const isConnected = cursor !== null && read.some(({ id }) => known.has(id));
        const rest = last && isConnected ? this.calls.value.filter((each) => isNewer(last, each)) : [];
        batch(() => {
            this.calls.value = [...read, ...rest];
            if (rest.length === 0) {
                this.older = cursor;
                this.hasOlder.value = cursor !== null;
            }
            this.isRead.value = true;
            this.refusal.value = "";
        });
    }
}
