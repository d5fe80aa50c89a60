import { api } from "../api/client";
import { isUnreachable, type Failures } from "./Failures";
import { Store } from "./Store";

/** The journal's own settings, as the server told them last. They may be changed elsewhere, so they are read again with the lists. */
export class Settings extends Store {
    values: Record<string, string> | undefined;
    private failed = false;

    constructor(private readonly failures: Failures) {
        super();
    }

    /** Whether the journal is switched off; false as long as that is not known. */
    isJournalOff(): boolean {
        return this.values?.["call-log-enabled"] === "false";
    }

    async read(): Promise<void> {
        try {
            this.values = await api.settings();
            this.failed = false;
            this.failures.settle("settings");
        } catch (error) {
            if (!this.failed && !isUnreachable(error)) {
                this.failures.tell("settings", "The settings could not be read", error);
            }
            this.failed = true;
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
        this.changed();
    }
}
