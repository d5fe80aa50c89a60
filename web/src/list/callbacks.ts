import type { Entry } from "../api/types";

const types: Record<string, string> = { onBusy: "when no longer busy", onNoReply: "after the next call" };

/** "requested, when no longer busy" */
export function callbackText(entry: Entry): string {
    return [entry.state === "unknown" ? "" : entry.state, types[entry.type ?? ""]].filter(Boolean).join(", ");
}
