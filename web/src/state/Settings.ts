import { api } from "../api/client";
import type { Failures } from "./Failures";
import { Store } from "./Store";

/** The journal's own settings, as the server told them last. They may be changed elsewhere, so they are read again with the lists. */
export class Settings extends Store {
    values: Record<string, string> | undefined;
    private failed = false;
    /** How many times they were read; answers may come in another order than they were asked for, and only the newest one counts. */
    private reads = 0;

    constructor(private readonly failures: Failures) {
        super();
    }

    /** Whether the journal is switched off; false as long as that is not known. */
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
            this.failures.settle("settings");
        } catch (error) {
            if (read !== this.reads) {
                return;
            }
            this.failed = true;
            this.failures.tellOnce("settings", "The settings could not be read", error);
        }
        this.changed();
    }

    readFailed(): void {
        if (this.failed) {
            void this.read();
        }
    }

    /** Throws what the server says against it. */
    async change(key: string, value: string): Promise<void> {
        this.values = await api.changeSetting(key, value);
        void this.read(); // What was asked for before may not have the change.
        this.changed();
    }
}
