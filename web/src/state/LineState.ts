import { EventStream } from "../api/EventStream";
import { api, ApiError } from "../api/client";
import type { Change, ListName, Status } from "../api/types";
import type { CallHistory } from "./CallHistory";
import type { Failures } from "./Failures";
import type { Journal } from "./Journal";
import type { Settings } from "./Settings";
import { Store } from "./Store";

const pollInterval = 2000;

/** The state of the telephone line and of the connection. Polls the status and keeps the event stream open. */
export class LineState extends Store {
    status: Status | undefined;
    private streaming: boolean | undefined;
    private reachable = true;
    private readonly stream: EventStream;

    constructor(
        private readonly journal: Journal,
        private readonly callHistory: CallHistory,
        private readonly settings: Settings,
        private readonly failures: Failures,
    ) {
        super();
        this.stream = new EventStream({
            changed: (list: ListName, change: Change) => {
                journal.onChange(list, change);
                callHistory.refreshSoon();
            },
            unviewedCount: (count) => {
                journal.checkUnviewedCount(count);
                callHistory.refreshSoon();
            },
            reload: () => {
                journal.readAll();
                callHistory.refreshSoon();
                void settings.read();
            },
            connected: (up) => {
                this.streaming = up;
                journal.live = up;
                this.changed();
            },
        });
    }

    /** Undefined until the first attempt to open the stream has ended. */
    get online(): boolean | undefined {
        return this.streaming === undefined ? undefined : this.streaming && this.reachable;
    }

    start(): void {
        this.stream.open();
        void this.poll();
    }

    private async poll(): Promise<void> {
        try {
            this.status = await api.status();
            if (!this.reachable) {
                // The stream does not notice a connection that was cut without a reset.
                this.reachable = true;
                this.stream.open();
            }
            this.journal.readFailed();
            this.callHistory.readFailed();
            this.settings.readFailed();
        } catch (error) {
            if (error instanceof ApiError && error.status === 401) {
                this.stream.close();
                this.failures.report("status", "The state of the line could not be read", error);
                return;
            }
            this.reachable = false;
            this.journal.live = false;
        }
        this.changed();
        window.setTimeout(() => void this.poll(), pollInterval);
    }
}
