import { addressOf } from "./line";
import type { Change, ListName, LiveCall } from "./types";

const lists: Record<string, ListName> = {
    missedCallsUpdate: "missed",
    dialledCallsUpdate: "dialled",
    receivedCallsUpdate: "received",
    forwardedCallsUpdate: "forwarded",
    callBacksUpdate: "callbacks",
};

export interface EventHandler {
    changed(list: ListName, change: Change): void;
    /** The number of missed entries that are new has changed, perhaps by another client. */
    unviewedCount(): void;
    liveCalls(calls: LiveCall[]): void;
    /** Changes may have been missed, or the stream is new: everything must be read again. */
    reload(): void;
    connected(up: boolean): void;
}

/**
 * The server's event stream. The browser reconnects after a cut and sends the id of the last event, so that the server repeats the
 * missed ones. It does not reconnect after a response that is not a stream; then this class opens a new one.
 */
export class EventStream {
    private source: EventSource | undefined;
    private retry: number | undefined;
    private fresh = true;

    constructor(private readonly handler: EventHandler) {}

    open(): void {
        this.close();
        this.fresh = true;
        const source = new EventSource(addressOf("events"));
        this.source = source;
        source.onopen = () => {
            this.handler.connected(true);
            if (this.fresh) {
                this.fresh = false;
                this.handler.reload();
            }
        };
        source.onerror = () => {
            this.handler.connected(false);
            if (source.readyState === EventSource.CLOSED) {
                this.retry = window.setTimeout(() => this.open(), 3000);
            }
        };
        source.addEventListener("resync", () => this.handler.reload());
        source.addEventListener("missedCallsCountUpdate", () => this.handler.unviewedCount());
        this.on<{ calls: LiveCall[] }>("liveCallsUpdate", ({ calls }) => this.handler.liveCalls(calls));
        for (const [event, list] of Object.entries(lists)) {
            this.on<Change>(event, (change) => this.handler.changed(list, change));
        }
    }

    close(): void {
        window.clearTimeout(this.retry);
        if (this.source) {
            this.source.close();
            this.source = undefined;
            this.handler.connected(false);
        }
    }

    private on<Data>(event: string, handle: (data: Data) => void): void {
        this.source?.addEventListener(event, (message) => handle(JSON.parse((message as MessageEvent<string>).data) as Data));
    }
}
