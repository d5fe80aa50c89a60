import type { Call } from "../api/types";
import { calledBackAt } from "../state/dealtWith";
import { wasTakenElsewhere } from "../state/unseen";
import { t } from "../text/language";
import { partyText } from "../text/people";
import { dayAndTime, durationText } from "../text/times";

export type Outcome = "missed" | "elsewhere" | "dialled" | "unreached" | "received" | "forwarded";

export function outcomeOf(call: Call): Outcome {
    if (call.list === "missed") {
        return wasTakenElsewhere(call) ? "elsewhere" : "missed";
    }
    if (call.list === "dialled") {
        return call.answered !== null || call.duration > 0 ? "dialled" : "unreached";
    }
    return call.list;
}

/** The outcome in a word or two, for a row; of a forwarded call also to whom. */
export function outcomeText(call: Call): string {
    const [outcome, target] = [outcomeOf(call), connectedParty(call)];
    return outcome === "forwarded" && target ? t().became.forwardedTo(target) : t().outcomes[outcome];
}

/** The other party that a call was connected with, if that is another than the one that it is filed under. */
function connectedParty(call: Call): string {
    return call.connectedNumber && call.connectedNumber !== call.number ? partyText(call.connectedName, call.connectedNumber) : "";
}

function forwarded(call: Call): string {
    const { became } = t();
    const target = connectedParty(call);
    const reason = call.reason === "forward-busy" || call.reason === "forward-no-answer" || call.reason === "forward-always" ? became[call.reason] : "";
    return [target ? became.forwardedTo(target) : became.forwarded, reason].filter(Boolean).join(", ");
}

/** docs/http-api.md says which members tell the kinds of transfers apart. */
function transferred(call: Call): string {
    const { became } = t();
    const [connected, other] = [connectedParty(call), partyText(call.redirectingName, call.redirectingNumber)];
    if (connected) {
        return became.connectedYou(connected);
    }
    if (call.list === "missed" || !other) {
        return call.list !== "missed" && call.connectedNumber ? became.transferred : became.transferredHere;
    }
    return call.answered === call.start ? became.transferredBy(other) : became.transferredTo(other);
}

/** The way of the call to this telephone or away from it, in words; empty for a plain call. */
function course(call: Call): string {
    const { became } = t();
    const [other, via] = [connectedParty(call), partyText(call.redirectingName, call.redirectingNumber)];
    switch (call.reason) {
        case "completed-elsewhere":
            return other ? became.takenBy(other) : became.takenElsewhere;
        case "transfer":
            return transferred(call);
        case "busy":
        case "rejected":
        case "unanswered":
        case "no-such-number":
        case "congestion":
            return became[call.reason];
        case "pick-up":
            return call.list === "missed" ? became.takenElsewhere : via ? became.pickedUpFrom(via) : became.pickedUp;
        case "forward-busy":
        case "forward-no-answer":
        case "forward-always":
            if (call.list === "dialled") {
                return other ? became.forwardedTo(other) : [became.forwarded, became.unanswered].join(", ");
            }
            return call.list === "forwarded" ? forwarded(call) : via ? [became.forwardedBy(via), became[call.reason]].join(", ") : became[call.reason];
        default:
            if (call.list === "dialled") {
                return other ? became.forwardedTo(other) : outcomeOf(call) === "unreached" ? became.unanswered : "";
            }
            return call.list === "forwarded" ? forwarded(call) : via ? became.forwardedBy(via) : other ? became.connected(other) : "";
    }
}

/** The course and the end of a call, in a few sentences without full stops. */
export function becameOf(call: Call): string[] {
    const { became } = t();
    const dealt = calledBackAt(call);
    return [
        call.duration > 0 ? became.talked(durationText(call.duration, call.endApproximate)) : "",
        course(call),
        call.lineKey ? became.line(call.lineKey) : "",
        dealt ? became.calledBack(dayAndTime(dealt)) : "",
    ].filter(Boolean);
}
