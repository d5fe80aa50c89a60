import { computed } from "@preact/signals";
import type { Call } from "../api/types";
import { hiddenCalls } from "./deletions";
import { newFeed } from "./feeds";

/** True if the call rang here and was answered on another telephone; docs/http-api.md. */
export function wasTakenElsewhere(call: Call): boolean {
    return call.list === "missed" && (call.reason === "completed-elsewhere" || call.reason === "pick-up");
}

/**
 * The newest calls of the missed entries that the user has not seen, by id: each has a dot in the list, and the badge is their number.
 * Entries whose newest call was answered elsewhere are none of them.
 */
export const unseen = computed<ReadonlySet<number>>(() => {
    const isHidden = hiddenCalls();
    const known = new Set<string>();
    const newest = newFeed.calls.value.filter(({ id, uniqueId, viewed }) => {
        const isNewest = !viewed && uniqueId !== null && !isHidden(id) && !known.has(uniqueId);
        if (isNewest) {
            known.add(uniqueId);
        }
        return isNewest;
    });
    return new Set(newest.filter((call) => !wasTakenElsewhere(call)).map(({ id }) => id));
});
