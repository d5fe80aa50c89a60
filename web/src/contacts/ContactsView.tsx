import { useEffect, useState } from "preact/hooks";
import { numberFields, type Contact } from "../api/types";
import { Icon } from "../frame/Icon";
import { version } from "../state/connection";
import { contactsDeleted, deleteLater } from "../state/deletions";
import { mayWrite } from "../state/rights";
import { addressOf } from "../state/route";
import { t } from "../text/language";
import { ContactDialog } from "./ContactDialog";
import { dismissImport, importContacts, imports } from "./ContactImport";
import { ContactRow } from "./ContactRow";
import { ImportButton } from "./ImportButton";
import { ImportResult } from "./ImportResult";
import { sortName, useContacts } from "./useContacts";

const collator = new Intl.Collator(undefined, { sensitivity: "base" });

/** The letter under which a contact is listed: people look for Ø under O. */
function letterOf(contact: Contact): string {
    const [first = ""] = sortName(contact).normalize("NFD");
    const plain = [..."ABCDEFGHIJKLMNOPQRSTUVWXYZ"].find((letter) => collator.compare(letter, first) === 0);
    return plain ?? (/\p{L}/u.test(first) ? first.toLocaleUpperCase() : "#");
}

/** For one who may not change the contact. */
function showCalls(contact: Contact): void {
    const number = numberFields.map((name) => contact[name]).find(Boolean);
    if (number) {
        window.location.hash = addressOf("calls", { person: number });
    }
}

export function ContactsView() {
    const [search, setSearch] = useState("");
    const [saved, setSaved] = useState(0);
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    /** The index of the contact opened last. When it is deleted, the one now at this index gets the focus. */
    const [last, setLast] = useState(0);
    const found = useContacts(search, saved + imports.value + contactsDeleted.value + version.value);
    const texts = t().contacts;
    useEffect(() => () => dismissImport(), []);
    const letters = (found?.contacts ?? []).map(letterOf);
    return (
        <div
            class="view contacts-view"
            onDragOver={(event) => event.preventDefault()}
            onDrop={(event) => {
                event.preventDefault();
                const file = event.dataTransfer?.files[0];
                if (file && mayWrite.value) {
                    void importContacts(file);
                }
            }}
        >
            <div class="view-column">
                <div class="search-bar" role="search">
                    <div class="search">
                        <Icon name="search" />
                        <input
                            type="search"
                            aria-label={texts.search}
                            placeholder={texts.placeholder}
                            value={search}
                            data-test="search-contacts"
                            data-focus-target={found?.contacts.length === 0 || undefined}
                            onInput={(event) => setSearch(event.currentTarget.value)}
                        />
                    </div>
                    {mayWrite.value && <ImportButton />}
                    {mayWrite.value && (
                        <button type="button" class="main-button" data-test="new-contact" onClick={() => setDialog({})}>
                            {texts.add}
                        </button>
                    )}
                </div>
                <ImportResult />
                <p role="status" class="hint" data-test="contact-count">
                    {found && texts.count(found.total)}
                    {found && found.total > found.contacts.length && `, ${texts.firstOf(found.contacts.length)}`}
                </p>
                {found?.total === 0 && (
                    <div class="empty" data-test="empty">
                        <h2>{search.trim() ? texts.noneFound : texts.none}</h2>
                        <p>{search.trim() ? texts.noneFoundText : texts.noneText}</p>
                    </div>
                )}
                <ul class="contacts">
                    {found?.contacts.map((contact, index) => [
                        letters[index] !== letters[index - 1] && (
                            <li key={`letter ${letters[index]}`} class="day" aria-hidden="true">
                                {letters[index]}
                            </li>
                        ),
                        <ContactRow
                            key={contact.id}
                            contact={contact}
                            isTarget={index === Math.min(last, found.contacts.length - 1)}
                            onOpen={() => {
                                setLast(index);
                                if (mayWrite.value) {
                                    setDialog({ contact });
                                } else {
                                    showCalls(contact);
                                }
                            }}
                        />,
                    ])}
                </ul>
            </div>
            {dialog && (
                <ContactDialog
                    {...dialog}
                    {...(dialog.contact && { onDelete: () => deleteLater("contacts", [dialog.contact?.id ?? ""]) })}
                    onSaved={() => setSaved((count) => count + 1)}
                    onClose={() => setDialog(undefined)}
                />
            )}
        </div>
    );
}
