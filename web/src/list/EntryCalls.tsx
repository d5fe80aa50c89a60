import type { Entry } from "../api/types";
import { plural } from "../text/names";
import { OccurrenceList } from "./OccurrenceList";

/** The newest calls of an entry, and a link to all calls of its number, those of other entries and lists, too. */
export function EntryCalls({ entry }: { entry: Entry }) {
    const shown = entry.occurrences ?? [];
    const { calls = shown.length, number } = entry;
    const all = number && (
        <a href={`#/calls?number=${encodeURIComponent(number)}`} data-test="all-calls">
            All calls of this number
        </a>
    );
    return (
        <>
            <h3>{plural(calls, "call", "calls")}</h3>
            <p class="hint">
                {calls > shown.length && `The newest ${shown.length} of ${plural(calls, "call", "calls")}. `}
                {all}
            </p>
            <OccurrenceList calls={shown} />
        </>
    );
}
