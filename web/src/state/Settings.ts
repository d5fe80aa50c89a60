import { api } from "../api/client";
import type { Failures } from "./Failures";
import { Store } from "./Store";

/** The journal's settings as last read from the server. Other clients may change them, so they are read again with the lists. */
export class Settings extends Store {
    values: Record<string, string> | undefined;
    private failed = false;
    /** The number of read requests. Responses may arrive in another order; only that of the latest request counts. */
    private reads = 0;

    constructor(private readonly failures: Failures) {
        super();
    }

    /** True if the journal is switched off; false until the settings are read. */
    isJournalOff(): boolean {
        return this.values?.["call-log-enabled"] === "false";
    }

    async read(): Promise<void> {
        const read = ++this.reads;
        try {
            const values = await api.settings();
            if (read !== this.reads) {
                return;
            }
            this.values = values;
            this.failed = false;
            this.failures.clear("settings");
        } catch (error) {
            if (read !== this.reads) {
                return;
            }
            this.failed = true;
            this.failures.reportOnce("settings", "The settings could not be read", error);
        }
        this.changed();
    }

    readFailed(): void {
        if (this.failed) {
            void this.read();
        }
    }

    /** Throws the ApiError if the server refuses the value. */
    async change(key: string, value: string): Promise<void> {
        this.values = await api.changeSetting(key, value);
        void this.read(); // A response that is on its way may not contain the change.
        this.changed();
    }
}
