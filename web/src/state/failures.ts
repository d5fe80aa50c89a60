import { signal } from "@preact/signals";
import { ApiError } from "../api/request";
import { t } from "../text/language";

/** The server has refused the credentials of this browser. */
export const signedOut = signal(false);

/** Failed work, with the latest message for each kind, in the language of the moment. A failure stays until the user dismisses it or work of that kind succeeds. */
export const failures = signal<ReadonlyMap<string, () => string>>(new Map());

/** Kinds of work that were reported and have not succeeded since. */
const reported = new Set<string>();

/** The message of the error, as the end of a sentence. */
export function reasonOf(error: unknown): string {
    const isUnreachable = error instanceof ApiError && error.status === 0;
    return (isUnreachable ? t().errors.unreachable : (error as Error).message).replace(/\.?$/, ".");
}

/** Shows a failure; `what` precedes the reason: "Not marked as seen". */
export function report(work: string, what: () => string, error: unknown): void {
    if (error instanceof ApiError && error.status === 401) {
        signedOut.value = true;
        return;
    }
    failures.value = new Map([...failures.value, [work, () => `${what()}: ${reasonOf(error)}`]]);
}

/**
 * For work that the page repeats automatically. Reports the first failure only, and none if the journal is unreachable: the page shows
 * that separately.
 */
export function reportOnce(work: string, what: () => string, error: unknown): void {
    const isUnreachable = error instanceof ApiError && error.status === 0;
    if (!isUnreachable && !reported.has(work)) {
        reported.add(work);
        report(work, what, error);
    }
}

export function dismiss(work: string): void {
    if (failures.value.has(work)) {
        failures.value = new Map([...failures.value].filter(([each]) => each !== work));
    }
}

/** Shows a failure that has no reason of its own. */
export function inform(work: string, text: () => string): void {
    failures.value = new Map([...failures.value, [work, text]]);
}

/** Removes the failure of work that has succeeded. */
export function succeeded(work: string): void {
    reported.delete(work);
    dismiss(work);
}
