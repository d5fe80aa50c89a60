import { plural } from "../text/names";
import { callsByDay } from "./callTimes";
import { TimesPicture } from "./TimesPicture";
import { TimesTable } from "./TimesTable";
import { useQuarters } from "./useQuarters";

/** When people call: the last four weeks by day and hour. */
export function TimesView() {
    const quarters = useQuarters();
    const found = callsByDay(quarters ?? []);
    const total = found.reduce((sum, day) => sum + day.total, 0);
    return (
        <div class="view">
            <h2>When people call</h2>
            <p class="hint">
                {quarters ? `${plural(total, "call", "calls")} in the last four weeks, all lists together. ` : "Counting the calls … "}
                {quarters && total === 0
                    ? "The picture fills as calls come in."
                    : "Counted is what the journal keeps: up to 1,000 entries in each list, with the last 10 calls of each."}
            </p>
            <TimesPicture days={found} />
            <details>
                <summary>The same as a table</summary>
                <TimesTable days={found} />
            </details>
        </div>
    );
}
