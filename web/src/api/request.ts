import { t } from "../text/language";
import { addressOf, chooseLine, chosenLine } from "./line";
import type { Rejection } from "./types";

/** The server refused the request, or was not reachable (status 0). The message is for the user. */
export class ApiError extends Error {
    constructor(
        readonly status: number,
        readonly code: string,
        message: string,
        readonly rejected: Record<string, Rejection> = {},
    ) {
        super(message);
    }
}

interface ErrorBody {
    error?: { code?: string; message?: string };
    rejected?: Record<string, Rejection>;
}

export interface Options {
    /** The request continues after the user has left the page. */
    keepalive?: boolean;
    /** The longest time to the response, in ms. */
    limit?: number;
}

/** The body and its type: a Blob unchanged, everything else as JSON. */
function content(body: unknown): RequestInit {
    if (body instanceof Blob || body === undefined) {
        return body ? { body } : {};
    }
    return { body: JSON.stringify(body), headers: { "Content-Type": "application/json" } };
}

/** Sends a request about the line of this browser. Throws ApiError. */
export async function request<Result>(method: string, path: string, body?: unknown, { keepalive = false, limit = 15_000 }: Options = {}): Promise<Result> {
    let response: Response;
    try {
        response = await fetch(addressOf(path), { method, keepalive, signal: AbortSignal.timeout(limit), ...content(body) });
    } catch {
        throw new ApiError(0, "unreachable", t().errors.unreachable);
    }
    if (!response.ok) {
        const { error, rejected } = (await response.json().catch(() => ({}))) as ErrorBody;
        if (error?.code === "unknown-line" && chosenLine) {
            chooseLine(""); // it was removed, or another access key was entered
        }
        throw new ApiError(response.status, error?.code ?? "", error?.message ?? t().errors.status(response.status), rejected);
    }
    return (response.status === 204 ? undefined : await response.json()) as Result;
}

/** Ignores "not found": another client has deleted it already. */
export function ignoreNotFound(error: unknown): void {
    if (!(error instanceof ApiError && error.status === 404)) {
        throw error;
    }
}
