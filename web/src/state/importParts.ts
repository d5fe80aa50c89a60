/**
 * Splits a file of contacts between cards or CSV records into parts below 64 KiB, the journal's limit of a request. Pure functions; the
 * journal validates the contacts.
 */

export type FileFormat = "vcard" | "csv";

/** A text line and its number in the file, from 1. */
interface Row {
    line: number;
    text: string;
}

export interface Part {
    rows: readonly Row[];
    /** The number of contacts in it. */
    contacts: number;
}

export interface Note {
    line: number;
    text: string;
}

export interface Split {
    parts: Part[];
    /** Contacts that are too large for a part. */
    skipped: Note[];
}

const maxBytes = 60_000;
/** Longer than an address, shorter than a picture. */
const maxPropertyLength = 4_000;
/** Properties whose content the journal does not keep; of PHOTO it keeps a URL. */
const bulky = /^([^:;]*\.)?(PHOTO|LOGO|SOUND|KEY|NOTE|X-[^:;]*)[:;]/i;

export function formatOf(fileName: string): FileFormat | undefined {
    return /\.(vcf|vcard)$/i.test(fileName) ? "vcard" : /\.csv$/i.test(fileName) ? "csv" : undefined;
}

/** Decodes UTF-16 with a mark, UTF-8, else the code page that many programs still write; its bytes are hardly ever valid UTF-8. */
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

/** Splits the file. Throws if a vCard file contains no card; the journal checks a CSV file. */
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

/** Packs the contacts into parts, each beginning with `head`. */
function packed(pieces: Row[][], head: Row[]): Split {
    const split: Split = { parts: [], skipped: [] };
    const maxPartBytes = maxBytes - size(head);
    let rows: Row[] = [];
    let bytesLeft = -1;
    for (const piece of pieces) {
        const bytes = size(piece);
        if (bytes > maxPartBytes) {
            split.skipped.push({ line: piece[0]?.line ?? 1, text: "it is too long" });
            continue;
        }
        if (bytes > bytesLeft) {
            rows = [...head];
            bytesLeft = maxPartBytes;
            split.parts.push({ rows, contacts: 0 });
        }
        bytesLeft -= bytes;
        piece.forEach((each) => rows.push(each));
        (split.parts[split.parts.length - 1] as Part).contacts += 1;
    }
    return split;
}

function size(rows: readonly Row[]): number {
    const encoder = new TextEncoder();
    return rows.reduce((bytes, each) => bytes + encoder.encode(each.text).length + 1, 0);
}

/** Splits at the cards. Text before the first card belongs to it, text after a card to that card; the journal reports it. */
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

/** Returns the most frequent of comma, semicolon and tab in the first row. */
function separatorOf(row: string): string {
    const count = (separator: string) => row.split(separator).length;
    return [",", ";", "\t"].reduce((best, each) => (count(each) > count(best) ? each : best));
}

/** True if a quoted cell continues on the next line. A quotation mark inside an unquoted cell is an ordinary character. */
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
