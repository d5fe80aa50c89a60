import type { Entry } from "../api/types";

export function fullName(person: { firstName: string; surname: string }): string {
    return `${person.firstName} ${person.surname}`.trim();
}

/** The title of an entry: its name, else its number. */
export function titleOf(entry: Entry): string {
    return entry.displayName || entry.number || "Unknown";
}

export function plural(count: number, one: string, many: string): string {
    return `${count.toLocaleString()} ${count === 1 ? one : many}`;
}
