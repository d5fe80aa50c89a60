import type { Call } from "../api/types";
import { t } from "../text/language";
import { clockTime, fullTime } from "../text/times";
import { becameOf, outcomeOf } from "./outcome";

/** One call of an expanded group. */
export function SingleRow({ call }: { call: Call }) {
    return (
        <div class="single" data-test="single">
            <time dateTime={call.start} title={fullTime(call.start)}>
                {clockTime(call.start)}
            </time>
            <span>{becameOf(call).join(" · ") || t().outcomes[outcomeOf(call)]}</span>
        </div>
    );
}
