import { journal } from "../state/app";
import { useStore } from "../state/Store";
import { plural } from "../text/names";
import { callsByDay } from "./callTimes";
import { TimesPicture } from "./TimesPicture";
import { TimesTable } from "./TimesTable";

/** When people call: the last four weeks by day and hour. */
export function TimesView() {
    const calls = useStore(journal);
    const found = callsByDay((list) => calls.entries(list));
    const total = found.reduce((sum, day) => sum + day.total, 0);
    return (
        <div class="view">
            <h2>When people call</h2>
            <p class="hint">
                {plural(total, "call", "calls")} in the last four weeks, all lists together.
                {total === 0 && " The picture fills as calls come in."}
            </p>
            <TimesPicture days={found} />
            <details>
                <summary>The same as a table</summary>
                <TimesTable days={found} />
            </details>
        </div>
    );
}
