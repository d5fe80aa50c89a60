import { useEffect, useLayoutEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { Contact, Entry, ListName } from "../api/types";
import { ContactDialog } from "../contacts/ContactDialog";
import { journal } from "../state/app";
import { titleOf } from "../text/names";
import { dateLanguage, fullTime } from "../text/times";
import { callbackText } from "./callbacks";
import { EntryCalls } from "./EntryCalls";
import { PartyNote } from "./PartyNote";
import { useMarkOpenedViewed } from "./useMarkViewed";

interface Props {
    list: ListName;
    entry: Entry;
    onClose: () => void;
    onDelete: () => void;
}

/** The contact with this number, or undefined. Requested again when the version changes. */
function useContactWith(number: string | undefined, version: number): Contact | undefined {
    const [contact, setContact] = useState<Contact>();
    useEffect(() => {
        let current = true;
        if (number) {
            api.contactWith(number).then(
                (response) => current && setContact(response),
                () => undefined, // it can still be added
            );
        }
        return () => {
            current = false;
        };
    }, [number, version]);
    return contact;
}

/** An open entry: its calls and its actions. Beside the list in a wide window, else in place of the list. */
export function EntryDetails({ list, entry, onClose, onDelete }: Props) {
    const heading = useRef<HTMLHeadingElement>(null);
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    const [version, setVersion] = useState(0);
    const contact = useContactWith(entry.number, version);
    const asking = useRef(false);
    useLayoutEffect(() => heading.current?.focus(), []);
    useMarkOpenedViewed(entry);

    /** Asks for the contact first: it may have been added or deleted meanwhile. */
    const openDialog = async () => {
        if (!asking.current) {
            asking.current = true;
            const known = await api.contactWith(entry.number).catch(() => contact);
            asking.current = false;
            setDialog(known ? { contact: known } : {});
        }
    };
    const title = titleOf(entry);
    const waiting = callbackText(entry);
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
                <h2 id="details-title" tabIndex={-1} ref={heading} data-focus-target>
                    <bdi>{title}</bdi>
                </h2>
                <button type="button" data-test="close" onClick={onClose}>
                    Close
                </button>
            </div>
            {entry.displayName && entry.number && <p class="details-number">{entry.number}</p>}
            <div class="details-actions">
                {entry.number && (
                    <button type="button" data-test="add-contact" onClick={() => void openDialog()}>
                        {contact ? "Change the contact" : "Add to contacts"}
                    </button>
                )}
                {entry.viewed && (
                    <button
                        type="button"
                        data-test="mark-new"
                        onClick={() => {
                            onClose();
                            journal.markNew(entry);
                        }}
                    >
                        Mark as new
                    </button>
                )}
                <button type="button" data-test="details-delete" onClick={onDelete}>
                    Delete
                </button>
            </div>
            {entry.number && <PartyNote key={entry.number} number={entry.number} />}
            {list === "callbacks" ? (
                <p>
                    Callback asked for on{" "}
                    <time lang={dateLanguage} dateTime={entry.time}>
                        {fullTime(entry.time)}
                    </time>
                    {waiting && ` (${waiting})`}.
                </p>
            ) : (
                <EntryCalls list={list} entry={entry} />
            )}
            {dialog && (
                <ContactDialog
                    {...dialog}
                    first={{ firstName: entry.firstName, surname: entry.surname, office: entry.number }}
                    onSaved={() => setVersion((count) => count + 1)}
                    onClose={() => setDialog(undefined)}
                />
            )}
        </section>
    );
}
