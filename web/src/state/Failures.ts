import { ApiError } from "../api/client";
import { Store } from "./Store";

/** The message of the error, as the end of a sentence. */
export function reasonOf(error: unknown): string {
    return (error as Error).message.replace(/\.?$/, ".");
}

/** Failed work, with the latest reason for each kind. A failure stays until the user dismisses it or work of that kind succeeds. */
export class Failures extends Store {
    /** The server has refused the credentials of this browser. */
    signedOut = false;
    private readonly texts = new Map<string, string>();
    /** Kinds of work that were reported and have not succeeded since. */
    private readonly reported = new Set<string>();

    all(): [string, string][] {
        return [...this.texts];
    }

    /** Shows a failure; `what` precedes the reason: "Not marked as viewed". */
    report(work: string, what: string, error: unknown): void {
        this.signedOut ||= error instanceof ApiError && error.status === 401;
        this.texts.set(work, `${what}: ${reasonOf(error)}`);
        this.changed();
    }

    /**
     * For work that the page repeats automatically. Reports the first failure only, and none if the journal is unreachable: the page
     * shows that separately.
     */
    reportOnce(work: string, what: string, error: unknown): void {
        const isUnreachable = error instanceof ApiError && error.status === 0;
        if (!isUnreachable && !this.reported.has(work)) {
            this.reported.add(work);
            this.report(work, what, error);
        }
    }

    dismiss(work: string): void {
        if (this.texts.delete(work)) {
            this.changed();
        }
    }

    /** Removes the failure of work that has succeeded. */
    clear(work: string): void {
        this.reported.delete(work);
        this.dismiss(work);
    }
}
