import { signal } from "@preact/signals";
import { api } from "../api/client";
import type { Line } from "../api/types";

/** More lines than a person chooses from by looking at all of them. */
const mostShown = 200;

/** The lines that the access key may see, and their number, of which `lines` may be a part. */
export const lines = signal<readonly Line[]>([]);
export const lineCount = signal(0);

/** Reads the lines and their counts of new missed calls. Without them, the page shows its own line only. */
export async function readLines(): Promise<void> {
    try {
        const response = await api.lines(mostShown);
        lines.value = response.lines;
        lineCount.value = response.total;
    } catch {
        // The connection is told of elsewhere.
    }
}
