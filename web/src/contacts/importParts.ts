/**
 * A file of contacts, cut into parts that the journal takes: it refuses a body beyond 64 KiB. Cuts are between cards or CSV records only. Pure functions;
 * what the journal would say of a contact is left to the journal.
 */

export type FileFormat = "vcard" | "csv";

/** A line, and which of the file it is, from 1 on. */
interface Row {
    line: number;
    text: string;
}

export interface Part {
    rows: readonly Row[];
    /** How many contacts are in it. */
    contacts: number;
}

export interface Note {
    line: number;
    text: string;
}

export interface Split {
    parts: Part[];
    /** Contacts that fit into no part. */
    skipped: Note[];
}

const maxBytes = 60_000;
/** More than an address, less than a picture. */
const maxPropertyLength = 4_000;
/** Properties whose content the journal does not keep; of PHOTO it keeps an address. */
const bulky = /^([^:;]*\.)?(PHOTO|LOGO|SOUND|KEY|NOTE|X-[^:;]*)[:;]/i;

export function formatOf(fileName: string): FileFormat | undefined {
    return /\.(vcf|vcard)$/i.test(fileName) ? "vcard" : /\.csv$/i.test(fileName) ? "csv" : undefined;
}

/** Many programs still write the code page of the machine; its bytes are hardly ever valid UTF-8. */
export function decoded(bytes: ArrayBuffer): string {
    const [first, second] = new Uint8Array(bytes);
    if ((first === 0xff && second === 0xfe) || (first === 0xfe && second === 0xff)) {
        return new TextDecoder(first === 0xff ? "utf-16le" : "utf-16be").decode(bytes);
    }
    try {
        return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
    } catch {
        return new TextDecoder("windows-1252").decode(bytes);
    }
}

/** Throws when the file is none of its format. Of a CSV file the journal says it. */
export function partsOf(text: string, format: FileFormat): Split {
    const rows = text.split(/\r\n|\r|\n/).map((each, index) => ({ line: index + 1, text: each }));
    if (format === "vcard") {
        if (!/BEGIN:VCARD/i.test(text)) {
            throw new Error("no card begins in it");
        }
        return packed(cardsIn(rows).map(withoutBulk), []);
    }
    const [head = [], ...records] = recordsIn(rows);
    return packed(records.length > 0 ? records : [[]], head);
}

export function textOf(part: Part): string {
    return part.rows.map((each) => `${each.text}\n`).join("");
}

/** `head` begins every part. A piece is one contact. */
function packed(pieces: Row[][], head: Row[]): Split {
    const split: Split = { parts: [], skipped: [] };
    const roomOfPart = maxBytes - size(head);
    let rows: Row[] = [];
    let room = -1;
    for (const piece of pieces) {
        const bytes = size(piece);
        if (bytes > roomOfPart) {
            split.skipped.push({ line: piece[0]?.line ?? 1, text: "it is too long" });
            continue;
        }
        if (bytes > room) {
            rows = [...head];
            room = roomOfPart;
            split.parts.push({ rows, contacts: 0 });
        }
        room -= bytes;
        piece.forEach((each) => rows.push(each));
        (split.parts[split.parts.length - 1] as Part).contacts += 1;
    }
    return split;
}

function size(rows: readonly Row[]): number {
    const encoder = new TextEncoder();
    return rows.reduce((bytes, each) => bytes + encoder.encode(each.text).length + 1, 0);
}

/** What stands before the first card goes with it, what stands behind a card with that one: the journal says that it belongs to none. */
function cardsIn(rows: Row[]): Row[][] {
    const cards: Row[][] = [];
    for (const row of rows) {
        const card = cards[cards.length - 1];
        const begins = /^BEGIN:VCARD\s*$/i.test(row.text);
        if (card && !(begins && card.some((each) => each.text.trim()))) {
            card.push(row);
        } else {
            cards.push([row]);
        }
    }
    return cards;
}

function withoutBulk(card: Row[]): Row[] {
    const kept: Row[] = [];
    for (let begin = 0, end = 0; begin < card.length; begin = end) {
        let length = 0;
        do {
            length += card[end]?.text.length ?? 0;
            ++end;
        } while (/^[ \t]/.test(card[end]?.text ?? ""));
        if (length <= maxPropertyLength || !bulky.test(card[begin]?.text ?? "")) {
            card.slice(begin, end).forEach((each) => kept.push(each));
        }
    }
    return kept;
}

function recordsIn(rows: Row[]): Row[][] {
    const records: Row[][] = [];
    const separator = separatorOf(rows.find((each) => each.text.trim())?.text ?? "");
    let open = false;
    for (const row of rows) {
        if (open) {
            records[records.length - 1]?.push(row);
        } else if (row.text.trim()) {
            records.push([row]);
        } else {
            continue;
        }
        open = staysOpen(row.text, open, separator);
    }
    return records;
}

/** Of comma, semicolon and tab the one that the first row has most of. */
function separatorOf(row: string): string {
    const count = (separator: string) => row.split(separator).length;
    return [",", ";", "\t"].reduce((best, each) => (count(each) > count(best) ? each : best));
}

/** Whether a cell between quotation marks goes on in the next line. A mark inside a cell that does not begin with one is a mark like any other. */
function staysOpen(text: string, open: boolean, separator: string): boolean {
    const opening = / *"/y;
    for (let at = 0; ; ) {
        opening.lastIndex = at;
        if (!open && opening.test(text)) {
            open = true;
            at = opening.lastIndex;
        }
        while (open) {
            const mark = text.indexOf('"', at);
            if (mark < 0) {
                return true;
            }
            open = text[mark + 1] === '"';
            at = mark + (open ? 2 : 1);
        }
        const end = text.indexOf(separator, at);
        if (end < 0) {
            return false;
        }
        at = end + 1;
    }
}
