import { t } from "../text/language";
import { contactImport, type ImportState } from "./ContactImport";

const notesAtOnce = 500;

function summary(state: ImportState): string {
    const texts = t().contacts;
    if ("failure" in state) {
        return `${texts.importFailed(state.file, state.failure)} ${state.isRefused ? "" : texts.importAgain}`;
    }
    if (!state.response) {
        return texts.importing(state.file);
    }
    const { read, added, changed, unchanged } = state.response;
    const imported = added + changed + unchanged;
    const details = added < imported ? ` ${texts.importDetails(added, changed, unchanged)}` : "";
    return texts.imported(state.file, texts.count(imported), read - imported) + details;
}

/** The progress and the result of an import. */
export function ImportResult() {
    const state = contactImport.value;
    const response = state && "response" in state ? state.response : undefined;
    const notes = [
        ...(response?.skipped ?? []).map((note) => ({ ...note, isSkipped: true })),
        ...(response?.remarks ?? []).map((note) => ({ ...note, isSkipped: false })),
    ].sort((one, other) => one.line - other.line);
    return (
        <>
            <p role="status" class="import-result" data-test="import-result">
                {state && summary(state)}
            </p>
            {notes.length > 0 && (
                <details class="import-notes">
                    <summary>{t().contacts.notes}</summary>
                    <ul>
                        {notes.slice(0, notesAtOnce).map((note, index) => (
                            <li key={index}>
                                {t().contacts.note(note.line, note.isSkipped)}
                                <bdi lang="en">{note.text}</bdi>
                            </li>
                        ))}
                        {notes.length > notesAtOnce && <li>{t().contacts.moreNotes(notes.length - notesAtOnce)}</li>}
                    </ul>
                </details>
            )}
        </>
    );
}
