import { EventLink } from "../api/EventLink";
import { api, ApiError } from "../api/client";
import type { Change, ListName, Status } from "../api/types";
import type { Failures } from "./Failures";
import type { Journal } from "./Journal";
import type { Settings } from "./Settings";
import { Store } from "./Store";

const pause = 2000;

/** How the line and the connection to the server are; asks for the one, and keeps the event stream that is the other. */
export class LineState extends Store {
    status: Status | undefined;
    private streams: boolean | undefined;
    private answers = true;
    private readonly link: EventLink;

    constructor(
        private readonly journal: Journal,
        private readonly settings: Settings,
        private readonly failures: Failures,
    ) {
        super();
        this.link = new EventLink({
            changed: (list: ListName, change: Change) => journal.take(list, change),
            unviewedCount: (count) => journal.takeUnviewedCount(count),
            readAgain: () => {
                journal.readAll();
                void settings.read();
            },
            connected: (up) => {
                this.streams = up;
                journal.live = up;
                this.changed();
            },
        });
    }

    /** Undefined until the first attempt has ended. */
    get online(): boolean | undefined {
        return this.streams === undefined ? undefined : this.streams && this.answers;
    }

    start(): void {
        this.link.open();
        void this.ask();
    }

    private async ask(): Promise<void> {
        try {
            this.status = await api.status();
            if (!this.answers) {
                // A connection that was cut without a word looks open to the stream.
                this.answers = true;
                this.link.open();
            }
            this.journal.readFailed();
            this.settings.readFailed();
        } catch (error) {
            if (error instanceof ApiError && error.status === 401) {
                this.link.close();
                this.failures.tell("status", "The state of the line could not be read", error);
                return;
            }
            this.answers = false;
            this.journal.live = false;
        }
        this.changed();
        window.setTimeout(() => void this.ask(), pause);
    }
}
