import { computed, signal } from "@preact/signals";
import { api } from "../api/client";
import type { LiveCall } from "../api/types";
import { language, t } from "../text/language";
import { report, succeeded } from "./failures";

/** The calls that ring or are up, the oldest first. */
export const liveCalls = signal<readonly LiveCall[]>([]);

export const ringing = computed(() =>
    liveCalls.value.find(({ direction, state }) => direction === "incoming" && (state === "ringing" || state === "offered")),
);

/** The number of events so far: a response that was requested before the latest one may be older than it. */
let events = 0;

export function onLiveCalls(calls: readonly LiveCall[]): void {
    ++events;
    liveCalls.value = calls;
    if (language.value !== "en" && calls.length > 0) {
        readLiveCalls(); // events name places in English
    }
}

export function readLiveCalls(): void {
    const before = events;
    api.liveCalls().then(
        (calls) => {
            if (before === events) {
                liveCalls.value = calls;
            }
        },
        () => undefined, // the next event has them
    );
}

async function control(work: () => Promise<void>): Promise<void> {
    try {
        await work();
        succeeded("live");
    } catch (error) {
        report("live", () => t().live.failed, error);
        readLiveCalls();
    }
}

export const answerCall = (call: LiveCall) => control(() => api.answerCall(call.callId));
export const hangUp = (call: LiveCall) => control(() => api.hangUp(call.callId));
