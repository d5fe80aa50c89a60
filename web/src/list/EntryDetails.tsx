import { useLayoutEffect, useRef, useState } from "preact/hooks";
import { ContactDialog } from "../contacts/ContactDialog";
import type { Entry, ListName } from "../api/types";
import { journal } from "../state/app";
import { fullName, plural, titleOf } from "../text/names";
import { fullTime } from "../text/times";
import { callbackText } from "./callbacks";
import { OccurrenceList } from "./OccurrenceList";

interface Props {
    list: ListName;
    entry: Entry;
    onClose: () => void;
    onDelete: () => void;
}

/** An open entry: all its calls, and what can be done with it. Beside the list where there is room, else in its place. */
export function EntryDetails({ list, entry, onClose, onDelete }: Props) {
    const heading = useRef<HTMLHeadingElement>(null);
    const [adding, setAdding] = useState(false);
    useLayoutEffect(() => {
        heading.current?.focus();
        if (entry.viewed === false && document.visibilityState === "visible") {
            journal.markViewed([entry.entryId]);
        }
    }, []);
    const title = titleOf(entry);
    const calls = entry.occurrences ?? [];
    return (
        <section
            class="details"
            aria-labelledby="details-title"
            data-test="details"
            onKeyDown={(event) => {
                if (event.key === "Escape" && !adding) {
                    onClose();
                }
            }}
        >
            <div class="details-head">
                <h2 id="details-title" tabIndex={-1} ref={heading} data-home>
                    <bdi>{title}</bdi>
                </h2>
                <button type="button" data-test="close" onClick={onClose}>
                    Close
                </button>
            </div>
            {fullName(entry) && entry.number && <p class="details-number">{entry.number}</p>}
            <div class="details-actions">
                {entry.number && (
                    <button type="button" data-test="add-contact" onClick={() => setAdding(true)}>
                        Add to contacts
                    </button>
                )}
                <button type="button" data-test="details-delete" onClick={onDelete}>
                    Delete
                </button>
            </div>
            {list === "callbacks" ? (
                <p>
                    Callback {callbackText(entry)}, asked for on <time dateTime={entry.time}>{fullTime(entry.time)}</time>.
                </p>
            ) : (
                <>
                    <h3>{plural(calls.length, "call", "calls")}</h3>
                    <OccurrenceList calls={calls} />
                </>
            )}
            {adding && (
                <ContactDialog
                    first={{ firstName: entry.firstName, surname: entry.surname, office: entry.number }}
                    onClose={() => setAdding(false)}
                />
            )}
        </section>
    );
}
