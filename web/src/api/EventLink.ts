import type { Change, ListName } from "./types";

const eventNames: Record<string, ListName> = {
    missedCallsUpdate: "missed",
    dialledCallsUpdate: "dialled",
    receivedCallsUpdate: "received",
    forwardedCallsUpdate: "forwarded",
    callBacksUpdate: "callbacks",
};

export interface EventTaker {
    changed(list: ListName, change: Change): void;
    unviewedCount(count: number): void;
    /** Something may have been missed, or the stream is new: read everything again. */
    readAgain(): void;
    connected(up: boolean): void;
}

/**
 * The event stream. The browser reconnects by itself after a cut and says where it was, so that the server sends what was missed. After
 * an answer that is no stream it gives up; then the link opens a stream anew.
 */
export class EventLink {
    private source: EventSource | undefined;
    private retry: number | undefined;
    private fresh = true;

    constructor(private readonly taker: EventTaker) {}

    open(): void {
        this.close();
        this.fresh = true;
        const source = new EventSource("/api/v1/events");
        this.source = source;
        source.onopen = () => {
            this.taker.connected(true);
            if (this.fresh) {
                this.fresh = false;
                this.taker.readAgain();
            }
        };
        source.onerror = () => {
            this.taker.connected(false);
            if (source.readyState === EventSource.CLOSED) {
                this.retry = window.setTimeout(() => this.open(), 3000);
            }
        };
        source.addEventListener("resync", () => this.taker.readAgain());
        source.addEventListener("missedCallsCountUpdate", (message) => {
            this.taker.unviewedCount((JSON.parse((message as MessageEvent<string>).data) as { count: number }).count);
        });
        for (const [event, list] of Object.entries(eventNames)) {
            source.addEventListener(event, (message) => {
                this.taker.changed(list, JSON.parse((message as MessageEvent<string>).data) as Change);
            });
        }
    }

    close(): void {
        window.clearTimeout(this.retry);
        if (this.source) {
            this.source.close();
            this.source = undefined;
            this.taker.connected(false);
        }
    }
}
