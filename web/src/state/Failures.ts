import { ApiError } from "../api/client";
import { Store } from "./Store";

/**
 * What could not be done, each kind of work with its newest reason. It stays until the reader has dismissed it or the same kind of work
 * is done well. That the journal cannot be reached is no such failure where the page tries again by itself: the top of the page says it.
 */
export class Failures extends Store {
    /** The server answered that it does not know this browser. */
    signedOut = false;
    private readonly texts = new Map<string, string>();

    all(): [string, string][] {
        return [...this.texts];
    }

    /** `what` stands before the reason: "Not marked as viewed". */
    tell(work: string, what: string, error: unknown): void {
        this.signedOut ||= error instanceof ApiError && error.status === 401;
        this.texts.set(work, `${what}: ${(error as Error).message.replace(/\.?$/, ".")}`);
        this.changed();
    }

    settle(work: string): void {
        if (this.texts.delete(work)) {
            this.changed();
        }
    }
}

export function isUnreachable(error: unknown): boolean {
    return error instanceof ApiError && error.status === 0;
}
