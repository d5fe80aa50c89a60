const storageKey = "calljournal.line";

/** Of addresses that belong to no line. */
const common = /^(session|lines)(\/|\?|$)/;

/** The line that this browser shows; empty for the one that the server chooses. */
export const chosenLine = window.localStorage.getItem(storageKey) ?? "";

/** Shows another line: everything of the former one is read anew. */
export function chooseLine(device: string): void {
    if (device) {
        window.localStorage.setItem(storageKey, device);
    } else {
        window.localStorage.removeItem(storageKey);
    }
    window.location.reload();
}

/**
 * The address of a path of the HTTP API, of the chosen line unless it begins with a slash. It is relative, so that the journal may be
 * served under a path.
 */
export function addressOf(path: string): string {
    if (path.startsWith("/")) {
        return `./api/v1${path}`;
    }
    const line = chosenLine && !common.test(path) ? `lines/${encodeURIComponent(chosenLine)}/` : "";
    return `./api/v1/${line}${path}`;
}
