import type { Entry, ListName } from "../api/types";
import { queryOf } from "../state/callFilters";
import { plural } from "../text/names";
import { OccurrenceList } from "./OccurrenceList";

/**
 * The newest calls of an entry, and a link to all calls of its number, those of other entries and lists, too. A party without a number is
 * found by its name in the list.
 */
export function EntryCalls({ list, entry }: { list: ListName; entry: Entry }) {
    const shown = entry.occurrences ?? [];
    const { calls = shown.length, number, displayName } = entry;
    const all = (number || displayName) && (
        <a href={`#/calls?${queryOf(number ? { number } : { list, search: displayName })}`} data-test="all-calls">
            {number ? "All calls of this number" : "All calls with this name"}
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
