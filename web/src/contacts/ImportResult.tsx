import { contactImport } from "../state/app";
import type { ImportState } from "../state/ContactImport";
import { useStore } from "../state/Store";
import { plural } from "../text/names";

const notesAtOnce = 500;

function summary(state: ImportState): string {
    const of = `${state.sent.toLocaleString()} of ${plural(state.total, "contact", "contacts")}`;
    if (state.running) {
        return `Importing ${state.file}: ${of} …`;
    }
    const imported = state.added + state.changed + state.unchanged;
    const parts = [`${state.added} added`, `${state.changed} changed`, `${state.unchanged} unchanged`];
    const result = `${plural(imported, "contact", "contacts")} imported, ${state.skipped.toLocaleString()} skipped`;
    const counts = state.added < imported ? `${result} (${parts.join(", ")})` : result;
    if (!state.failure) {
        return `${state.file}: ${counts}.`;
    }
    if (state.sent === 0) {
        return `${state.file} was not imported: ${state.failure}`;
    }
    return `The import of ${state.file} stopped: ${state.failure} The journal has imported ${of}. Import the file again for the rest: no contact is added twice.`;
}

/** The progress and the result of an import. */
export function ImportResult() {
    const { state } = useStore(contactImport);
    const notes = state && !state.running ? state.notes : [];
    return (
        <>
            <p role="status" class="import-result" data-test="import-result">
                {state && summary(state)}
            </p>
            {notes.length > 0 && (
                <details class="import-notes">
                    <summary>What was skipped or left out</summary>
                    <ul>
                        {notes.slice(0, notesAtOnce).map((note, index) => (
                            <li key={index}>
                                Line {note.line}: {note.skipped && "skipped: "}
                                <bdi>{note.text}</bdi>
                            </li>
                        ))}
                        {notes.length > notesAtOnce && <li>and {(notes.length - notesAtOnce).toLocaleString()} more</li>}
                    </ul>
                </details>
            )}
        </>
    );
}
