import type { Entry } from "../api/types";
import { fullName } from "./names";

/** Without capitals and accents: "muller" finds "Müller". */
function plain(text: string): string {
    return text.normalize("NFD").replace(/\p{M}/gu, "").toLowerCase();
}

function digits(text: string): string {
    return text.replace(/[\s()/.-]/g, "");
}

/** Whether the text is a part of the entry's name or of one of its numbers. */
export function matcher(text: string): (entry: Entry) => boolean {
    const wanted = plain(text.trim());
    const number = digits(wanted);
    if (!wanted) {
        return () => true;
    }
    return (entry) =>
        plain(fullName(entry)).includes(wanted) ||
        (number !== "" &&
            (entry.number.includes(number) ||
                (entry.occurrences ?? []).some((call) => call.number.includes(number) || call.connectedNumber.includes(number))));
}
