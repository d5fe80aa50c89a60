import { ApiError } from "../api/client";
import { Store } from "./Store";

/** What the error says, as a sentence's end. */
export function reasonOf(error: unknown): string {
    return (error as Error).message.replace(/\.?$/, ".");
}

/**
 * What could not be done, each kind of work with its newest reason. It stays until the reader has dismissed it or the same kind of work
 * is done well.
 */
export class Failures extends Store {
    /** The server answered that it does not know this browser. */
    signedOut = false;
    private readonly texts = new Map<string, string>();
    /** What was told and not done well since. */
    private readonly told = new Set<string>();

    all(): [string, string][] {
        return [...this.texts];
    }

    /** `what` stands before the reason: "Not marked as viewed". */
    tell(work: string, what: string, error: unknown): void {
        this.signedOut ||= error instanceof ApiError && error.status === 401;
        this.texts.set(work, `${what}: ${reasonOf(error)}`);
        this.changed();
    }

    /**
     * Of work that the page tries again by itself: tells the first failure only, and never that the journal cannot be reached, which the top
     * of the page says.
     */
    tellOnce(work: string, what: string, error: unknown): void {
        const isUnreachable = error instanceof ApiError && error.status === 0;
        if (!isUnreachable && !this.told.has(work)) {
            this.told.add(work);
            this.tell(work, what, error);
        }
    }

    dismiss(work: string): void {
        if (this.texts.delete(work)) {
            this.changed();
        }
    }

    /** The work was done well. */
    settle(work: string): void {
        this.told.delete(work);
        this.dismiss(work);
    }
}
