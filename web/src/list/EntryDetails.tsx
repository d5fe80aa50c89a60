import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { Contact, Entry, ListName } from "../api/types";
import { ContactDialog } from "../contacts/ContactDialog";
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

/** The contact that the number belongs to, if it is known; asked again when the version is another. */
function useContactWith(number: string | undefined, version: number): Contact | undefined {
    const [contact, setContact] = useState<Contact>();
    useEffect(() => {
        let current = true;
        if (number) {
            api.contactWith(number).then(
                (answer) => current && setContact(answer),
                () => undefined, // it can still be added
            );
        }
        return () => {
            current = false;
        };
    }, [number, version]);
    return contact;
}

/** An open entry: all its calls, and what can be done with it. Beside the list where there is room, else in its place. */
export function EntryDetails({ list, entry, onClose, onDelete }: Props) {
    const heading = useRef<HTMLHeadingElement>(null);
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    const [version, setVersion] = useState(0);
    const contact = useContactWith(entry.number, version);
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
                if (event.key === "Escape" && !dialog) {
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
                    <button type="button" data-test="add-contact" onClick={() => setDialog(contact ? { contact } : {})}>
                        {contact ? "Change the contact" : "Add to contacts"}
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
            {dialog && (
                <ContactDialog
                    {...dialog}
                    first={{ firstName: entry.firstName, surname: entry.surname, office: entry.number }}
                    onClose={() => {
                        setDialog(undefined);
                        setVersion(version + 1);
                    }}
                />
            )}
        </section>
    );
}
