import { t } from "./language";

interface Named {
    displayName: string;
    number: string;
    numberText?: string;
}

/** The number as people write it. */
export function numberOf(party: Named): string {
    return party.numberText || party.number;
}

/** The journal's name for a caller whose number is withheld. */
const withheldName = "Withheld";

/** The name of a party; empty if it has none. */
export function nameOf({ displayName, number }: Named): string {
    return displayName === withheldName && !number ? "" : displayName;
}

/** The name of a party, else its number, else "Number withheld". */
export function titleOf(party: Named): string {
    return nameOf(party) || numberOf(party) || t().withheld;
}

/** A party of which the server has sent name and number only. */
export function partyText(name: string | null, number: string | null): string {
    return name || number || "";
}

export function fullName(person: { firstName: string; surname: string }): string {
    return `${person.firstName} ${person.surname}`.trim();
}

/** Up to two initials of a name; empty if it has no letter. */
export function initials(name: string): string {
    const words = name.split(/[\s,]+/).filter((word) => /^\p{L}/u.test(word));
    const chosen = words.length > 1 ? [words[0], words[words.length - 1]] : words;
    return chosen.map((word) => [...(word ?? "")][0]?.toLocaleUpperCase() ?? "").join("");
}
