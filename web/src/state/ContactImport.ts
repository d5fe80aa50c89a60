import { api, ApiError } from "../api/client";
import type { ImportAnswer } from "../api/types";
import { decoded, formatOf, partsOf, textOf, type FileFormat, type Note, type Part } from "../contacts/importParts";
import { reasonOf, type Failures } from "./Failures";
import { Store } from "./Store";

interface ImportNote extends Note {
    skipped: boolean;
}

/** What was done with one file so far. */
export interface ImportState {
    file: string;
    running: boolean;
    /** How many contacts it seems to hold, and how many of them were sent. */
    total: number;
    sent: number;
    added: number;
    changed: number;
    unchanged: number;
    skipped: number;
    notes: ImportNote[];
    /** Why it ended before its time, as a sentence's end; empty otherwise. */
    failure: string;
}

/** The import of a file of contacts. It goes on when the reader turns to another view. */
export class ContactImport extends Store {
    state: ImportState | undefined;
    /** Grows with every part that the journal took: the contacts are others then. */
    taken = 0;

    constructor(private readonly failures: Failures) {
        super();
    }

    async run(file: File): Promise<void> {
        if (this.state?.running) {
            this.failures.tell("import", `${file.name} was not imported`, new Error("another file is being imported, wait for its end"));
            return;
        }
        this.failures.settle("import");
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

    /** The result has been seen. */
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
            const answer = await api.importContacts(format, textOf(part));
            // Of a CSV file each part has the first row again, and its remarks with it.
            this.count(format === "csv" && part !== parts[0] ? { ...answer, remarks: [] } : answer, part, state);
        }
    }

    private count(answer: ImportAnswer, part: Part, state: ImportState): void {
        const inFile = (skipped: boolean) => (note: Note) => ({ ...note, line: part.rows[note.line - 1]?.line ?? note.line, skipped });
        state.sent += part.contacts;
        state.added += answer.added;
        state.changed += answer.changed;
        state.unchanged += answer.unchanged;
        state.skipped += answer.read - answer.added - answer.changed - answer.unchanged;
        state.notes = [...state.notes, ...answer.skipped.map(inFile(true)), ...answer.remarks.map(inFile(false))];
        ++this.taken;
    }

    private fail(error: unknown, state: ImportState): void {
        if (error instanceof ApiError && error.status === 401) {
            this.failures.tell("import", "Not imported", error);
        }
        state.failure = error instanceof DOMException ? "the file cannot be read." : reasonOf(error);
    }
}
