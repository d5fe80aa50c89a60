import { api, ApiError } from "../api/client";
import type { ImportResponse } from "../api/types";
import { decoded, formatOf, partsOf, textOf, type FileFormat, type Note, type Part } from "./importParts";
import { reasonOf, type Failures } from "./Failures";
import { Store } from "./Store";

interface ImportNote extends Note {
    skipped: boolean;
}

/** The progress of the import of one file. */
export interface ImportState {
    file: string;
    running: boolean;
    /** The number of contacts found in the file, and of those sent. */
    total: number;
    sent: number;
    added: number;
    changed: number;
    unchanged: number;
    skipped: number;
    notes: ImportNote[];
    /** The reason why the import failed, as the end of a sentence; empty if it did not. */
    failure: string;
}

/** Imports a file of contacts. Continues while the user opens another view. */
export class ContactImport extends Store {
    state: ImportState | undefined;
    /** Incremented with every part that the journal has imported: the contacts have changed. */
    importedParts = 0;

    constructor(private readonly failures: Failures) {
        super();
    }

    async run(file: File): Promise<void> {
        if (this.state?.running) {
            this.failures.report("import", `${file.name} was not imported`, new Error("another file is being imported, wait for its end"));
            return;
        }
        this.failures.clear("import");
        const none = { total: 0, sent: 0, added: 0, changed: 0, unchanged: 0, skipped: 0, failure: "" };
        const state: ImportState = { file: file.name, running: true, ...none, notes: [] };
        this.state = state;
        this.changed();
        try {
            const format = formatOf(file.name);
            if (!format) {
                throw new Error("only files that end in .vcf or .csv can be imported");
            }
            await this.send(decoded(await file.arrayBuffer()), format, state);
        } catch (error) {
            this.fail(error, state);
        }
        state.notes.sort((one, other) => one.line - other.line);
        state.running = false;
        this.changed();
    }

    /** Removes the result of a finished import. */
    dismiss(): void {
        if (!this.state?.running) {
            this.state = undefined;
            this.changed();
        }
    }

    private async send(text: string, format: FileFormat, state: ImportState): Promise<void> {
        const { parts, skipped } = partsOf(text, format);
        state.total = parts.reduce((sum, each) => sum + each.contacts, 0);
        state.skipped = skipped.length;
        state.notes = skipped.map((each) => ({ ...each, skipped: true }));
        for (const part of parts) {
            this.changed();
            const response = await api.importContacts(format, textOf(part));
            // Each part of a CSV file repeats the first row and so its remarks.
            this.count(format === "csv" && part !== parts[0] ? { ...response, remarks: [] } : response, part, state);
        }
    }

    private count(response: ImportResponse, part: Part, state: ImportState): void {
        const inFile = (skipped: boolean) => (note: Note) => ({ ...note, line: part.rows[note.line - 1]?.line ?? note.line, skipped });
        state.sent += part.contacts;
        state.added += response.added;
        state.changed += response.changed;
        state.unchanged += response.unchanged;
        state.skipped += response.read - response.added - response.changed - response.unchanged;
        state.notes = [...state.notes, ...response.skipped.map(inFile(true)), ...response.remarks.map(inFile(false))];
        ++this.importedParts;
    }

    private fail(error: unknown, state: ImportState): void {
        if (error instanceof ApiError && error.status === 401) {
            this.failures.report("import", "Not imported", error);
        }
        state.failure = error instanceof DOMException ? "the file cannot be read." : reasonOf(error);
    }
}
