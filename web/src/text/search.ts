import type { Entry } from "../api/types";
import { fullName } from "./names";

/** Normalises as the server does: without case and accents, "ss" for "ß". Upper case last, since some small letters share a capital. */
function plain(text: string): string {
    return text.normalize("NFKD").toLowerCase().toUpperCase().replace(/\p{M}/gu, "");
}

/** Removes the separators of a number. */
function joined(number: string): string {
    return number.replace(/[\s()/.-]/g, "");
}

/** Returns a predicate: true if the text is a part of the entry's name or of one of its newest numbers. */
export function matcher(text: string): (entry: Entry) => boolean {
    const wanted = plain(text.trim());
    const number = joined(wanted);
    if (!wanted) {
        return () => true;
    }
    return (entry) => {
        if ([entry.displayName, fullName(entry)].some((name) => plain(name).includes(wanted))) {
            return true;
        }
        const calls = entry.occurrences ?? [];
        const numbers = new Set([entry.number, ...calls.flatMap((call) => [call.number, call.connectedNumber])]);
        return number !== "" && [...numbers].some((each) => joined(plain(each)).includes(number));
    };
}
