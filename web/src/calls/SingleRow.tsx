import type { Call } from "../api/types";
import { t } from "../text/language";
import { clockTime, fullTime } from "../text/times";
import { becameOf, outcomeOf } from "./outcome";
import type { Group } from "./rows";

/** One call of an expanded group. Its time has seconds if another call of the group began in the same minute. */
export function SingleRow({ call, group }: { call: Call; group: Group }) {
    const time = clockTime(call.start);
    const isAlone = group.calls.filter(({ start }) => clockTime(start) === time).length < 2;
    return (
        <div class="single" data-test="single">
            <time dateTime={call.start} title={fullTime(call.start)}>
                {isAlone ? time : clockTime(call.start, true)}
            </time>
            <span>{becameOf(call).join(" · ") || t().outcomes[outcomeOf(call)]}</span>
        </div>
    );
}
