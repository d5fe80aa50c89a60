import { computed, effect, signal } from "@preact/signals";
import { api } from "../api/client";
import { t } from "../text/language";
import { reportOnce, succeeded } from "./failures";
import { mayManage } from "./rights";

/** The journal's settings as last read from the server. Other clients may change them. */
export const settings = signal<Record<string, string> | undefined>(undefined);
export const isJournalOff = computed(() => settings.value?.["call-log-enabled"] === "false");

/** The number of read requests. Responses may arrive in another order; only that of the latest request counts. */
let reads = 0;

export async function readSettings(): Promise<void> {
    const read = ++reads;
    if (!mayManage.value) {
        return;
    }
    try {
        const values = await api.settings();
        if (read === reads) {
            settings.value = values;
            succeeded("settings");
        }
    } catch (error) {
        if (read === reads) {
            reportOnce("settings", () => t().errors.settings, error);
        }
    }
}

// At the begin the journal has not told yet what the access key may do.
effect(() => {
    if (mayManage.value) {
        void readSettings();
    }
});

/** Throws the ApiError if the server refuses the value. */
export async function changeSetting(key: string, value: string): Promise<void> {
    settings.value = await api.changeSetting(key, value);
    void readSettings(); // A response that is on its way may not contain the change.
}
