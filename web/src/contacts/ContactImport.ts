import { signal } from "@preact/signals";
import { api } from "../api/client";
import type { ImportResponse } from "../api/types";
import { t } from "../text/language";
import { reasonOf, report, succeeded } from "../state/failures";

/** The import of one file: under way, done with the server's response, or failed with a reason. */
export type ImportState = { file: string } & ({ response?: ImportResponse } | { failure: string; isRefused: boolean });

export const contactImport = signal<ImportState | undefined>(undefined);
/** Incremented with every file that was imported: the contacts have changed. */
export const imports = signal(0);

export function isImporting(): boolean {
    const state = contactImport.value;
    return state !== undefined && !("failure" in state) && !state.response;
}

function typeOf(name: string): string | undefined {
    return /\.csv$/i.test(name) ? "text/csv" : /\.(vcf|vcard)$/i.test(name) ? "text/vcard" : undefined;
}

/** The text of a file in UTF-8, UTF-16 with a byte order mark, or the code page of older programs. */
function decoded(bytes: ArrayBuffer): string {
    const [first, second] = new Uint8Array(bytes);
    const wide = first === 0xff && second === 0xfe ? "utf-16le" : first === 0xfe && second === 0xff ? "utf-16be" : undefined;
    try {
        return new TextDecoder(wide ?? "utf-8", { fatal: true }).decode(bytes);
    } catch {
        return new TextDecoder("windows-1252").decode(bytes);
    }
}

/** Imports a file of contacts. Continues while the user opens another view. */
export async function importContacts(file: File): Promise<void> {
    const texts = t().contacts;
    if (isImporting()) {
        report("import", () => t().contacts.importFailed(file.name, ""), new Error(texts.busy));
        return;
    }
    succeeded("import");
    const type = typeOf(file.name);
    contactImport.value = { file: file.name };
    try {
        if (!type) {
            throw new Error(texts.wrongFile);
        }
        const bytes = await file.arrayBuffer().catch(() => {
            throw new Error(texts.unreadable);
        });
        const response = await api.importContacts(new Blob([decoded(bytes)], { type }));
        contactImport.value = { file: file.name, response };
    } catch (error) {
        const isRefused = !type || (error as { status?: number }).status === 422;
        contactImport.value = { file: file.name, failure: reasonOf(error), isRefused };
    }
    ++imports.value;
}

/** Removes the result of a finished import. */
export function dismissImport(): void {
    if (!isImporting()) {
        contactImport.value = undefined;
    }
}
