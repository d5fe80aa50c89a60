import { plural } from "../text/names";
import { callsByDay } from "./callTimes";
import { CallHeatmap } from "./CallHeatmap";
import { CallTable } from "./CallTable";
import { useQuarters } from "./useQuarters";

/** The calls of the last four weeks by day and hour. */
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
                    ? "The heatmap fills as calls come in."
                    : "Deleted calls are not counted."}
            </p>
            <CallHeatmap days={found} />
            <details>
                <summary>The same as a table</summary>
                <CallTable days={found} />
            </details>
        </div>
    );
}
