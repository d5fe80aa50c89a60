import type { Occurrence } from "../api/types";
import { FactList } from "../frame/FactList";
import { dateLanguage, durationText, fullTime } from "../text/times";

/** The details of a call besides its time: pairs of name and value. */
function factsOf(call: Occurrence): [string, string][] {
    const redirected = [call.redirectingName, call.redirectingNumber].filter(Boolean).join(", ");
    const facts: [string, string | undefined][] = [
        ["Number", call.number],
        ["Connected to", call.connectedNumber === call.number ? "" : call.connectedNumber],
        ["Duration", call.durationSeconds === undefined ? "" : durationText(call.durationSeconds, call.endApproximate)],
        ["Redirected by", redirected],
        ["Forwarded to", call.forwardedToNumber],
        ["Line", call.lineKey],
        ["Instead of", call.substituteNumber],
        ["Answered", call.completedElsewhere ? "elsewhere" : ""],
    ];
    return facts.filter((fact): fact is [string, string] => Boolean(fact[1]));
}

export function OccurrenceList({ calls }: { calls: readonly Occurrence[] }) {
    return (
        <ol class="calls" data-test="calls">
            {calls.map((call, index) => (
                <li key={`${call.time} ${calls.length - index}`}>
                    <time lang={dateLanguage} dateTime={call.time}>
                        {fullTime(call.time)}
                    </time>
                    <FactList facts={factsOf(call)} />
                </li>
            ))}
        </ol>
    );
}
