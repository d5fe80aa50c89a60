import { signal } from "@preact/signals";
import { api } from "../api/client";
import type { Party } from "../api/types";
import { t } from "../text/language";
import { reportOnce, succeeded } from "../state/failures";

/** The open party; undefined until it is read. */
export const party = signal<Party | undefined>(undefined);

let latest = 0;

export async function readParty(number: string): Promise<void> {
    const reading = ++latest;
    try {
        const found = await api.party(number);
        if (reading === latest) {
            party.value = found;
            succeeded("party");
        }
    } catch (error) {
        if (reading === latest) {
            reportOnce("party", () => t().errors.readNote, error);
        }
    }
}

export function forgetParty(): void {
    ++latest;
    party.value = undefined;
}
