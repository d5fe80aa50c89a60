import type { Call, CallReason } from "../api/types";
import { titles } from "../state/route";
import { durationText, exactClockTime, fullTime } from "../text/times";

const reasons: Record<CallReason, string> = {
    "": "",
    transfer: "transferred",
    "forward-busy": "forwarded, busy",
    "forward-no-answer": "forwarded, no answer",
    "forward-always": "forwarded",
    "pick-up": "picked up",
    "completed-elsewhere": "answered elsewhere",
    busy: "busy",
    rejected: "rejected",
    unanswered: "not answered",
    "no-such-number": "no such number",
    congestion: "no connection",
};

function person(name: string | null, number: string | null): string {
    return [name, number].filter(Boolean).join(", ");
}

function duration(call: Call): string {
    return call.duration > 0 ? durationText(call.duration, call.endApproximate) : "";
}

export function callTitle(call: Call): string {
    return call.displayName || call.number || "Unknown";
}

/** The text below the name. */
export function callSummary(call: Call): string {
    const number = call.displayName ? call.number : call.number ? "" : "number withheld";
    return [titles[call.list], number, duration(call), reasons[call.reason]].filter(Boolean).join(" · ");
}

/** The details of a call: pairs of name and value. */
export function callFacts(call: Call): [string, string][] {
    const clock = (time: string | null) => (time ? exactClockTime(time) : "");
    const facts: [string, string][] = [
        ["Began", fullTime(call.start)],
        ["Answered", clock(call.answered)],
        ["Ended", `${call.ended && call.endApproximate ? "about " : ""}${clock(call.ended)}`],
        ["Number", call.number],
        ["Name at that time", call.name === call.displayName ? "" : call.name],
        ["Connected to", call.connectedNumber === call.number ? "" : person(call.connectedName, call.connectedNumber)],
        ["Redirected by", person(call.redirectingName, call.redirectingNumber)],
        ["Line", call.lineKey],
        ["Called back", call.calledBackAt ? fullTime(call.calledBackAt) : ""],
    ];
    return facts.filter(([, value]) => value);
}
