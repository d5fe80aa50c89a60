import { signal } from "@preact/signals";
import { api } from "../api/client";
import { ApiError } from "../api/request";
import { status } from "../state/connection";
import { report, succeeded } from "../state/failures";
import { announce } from "../state/news";
import { mayWrite } from "../state/rights";
import { t } from "../text/language";

export interface Callee {
    number: string;
    /** The name or the number, for texts. */
    who: string;
}

/** The callee whose number reaches an emergency service, until the user confirms or cancels the call. */
export const emergency = signal<Callee | undefined>(undefined);

/** True if the journal can place calls, and this browser may; else the browser is given a `tel:` link. */
export function canPlaceCalls(): boolean {
    return mayWrite.value && status.value?.callControl === true;
}

/** The address for the browser's own telephone program. */
export function linkOf(number: string): string {
    return number.includes("@") ? `sip:${number.replace(/^sip:/, "")}` : `tel:${number.replace(/[^\d+*#]/g, "")}`;
}

export async function dial(callee: Callee, confirmed = false): Promise<void> {
    emergency.value = undefined;
    if (!canPlaceCalls()) {
        window.location.assign(linkOf(callee.number));
        return;
    }
    try {
        await api.placeCall(callee.number, confirmed);
        succeeded("call");
        announce(t().call.calling(callee.who));
    } catch (error) {
        if (error instanceof ApiError && error.code === "emergency-number" && !confirmed) {
            emergency.value = callee;
        } else {
            report("call", () => t().call.failed(callee.who), error);
        }
    }
}
