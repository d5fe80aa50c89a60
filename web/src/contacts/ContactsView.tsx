import { useEffect, useState } from "preact/hooks";
import { numberFields, type Contact } from "../api/types";
import { contactImport, deletions } from "../state/app";
import { useStore } from "../state/Store";
import { fullName, plural } from "../text/names";
import { ContactDialog } from "./ContactDialog";
import { ImportButton } from "./ImportButton";
import { ImportResult } from "./ImportResult";
import { useContacts } from "./useContacts";

export function ContactsView() {
    const [search, setSearch] = useState("");
    const [version, setVersion] = useState(0);
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    /** The index of the contact opened last. When it is deleted, the one now at this index gets the focus. */
    const [last, setLast] = useState(0);
    const { importedParts } = useStore(contactImport);
    const { contactsDeleted } = useStore(deletions);
    const found = useContacts(search, version + importedParts + contactsDeleted);
    useEffect(() => () => contactImport.dismiss(), []);
    return (
        <div
            class="view"
            onDragOver={(event) => event.preventDefault()}
            onDrop={(event) => {
                event.preventDefault();
                const file = event.dataTransfer?.files[0];
                if (file) {
                    void contactImport.run(file);
                }
            }}
        >
            <div class="tools" role="search">
                <input
                    type="search"
                    aria-label="Search contacts"
                    placeholder="Name, number, company"
                    value={search}
                    data-focus-target={found?.contacts.length === 0 || undefined}
                    onInput={(event) => setSearch(event.currentTarget.value)}
                />
                <button type="button" class="main-button" onClick={() => setDialog({})}>
                    New contact
                </button>
                <ImportButton />
            </div>
            <ImportResult />
            <p role="status" class="hint">
                {found && plural(found.total, "contact", "contacts")}
                {found && found.total > found.contacts.length && `, the first ${found.contacts.length} of them here: search for the others`}
            </p>
            {found?.total === 0 && (
                <div class="empty">
                    <h2>{search.trim() ? "No contact found" : "No contacts"}</h2>
                    <p>
                        {search.trim()
                            ? "No name, number, company or e-mail address has this text in it."
                            : "Add one here or from an entry of a list, or import your address book: a vCard file (.vcf) or a CSV file."}
                    </p>
                </div>
            )}
            <ul class="contacts">
                {found?.contacts.map((contact, index) => (
                    <li key={contact.id}>
                        <button
                            type="button"
                            data-test="contact"
                            data-focus-target={index === Math.min(last, found.contacts.length - 1) || undefined}
                            onClick={() => {
                                setLast(index);
                                setDialog({ contact });
                            }}
                        >
                            <bdi class="contact-name">{fullName(contact) || contact.company || "No name"}</bdi>
                            <span class="row-facts">
                                {[fullName(contact) && contact.company, ...numberFields.map((name) => contact[name])].filter(Boolean).join(" · ")}
                            </span>
                        </button>
                    </li>
                ))}
            </ul>
            {dialog && (
                <ContactDialog
                    {...dialog}
                    {...(dialog.contact && { onDelete: () => deletions.add("contacts", [dialog.contact?.id ?? ""]) })}
                    onSaved={() => setVersion((count) => count + 1)}
                    onClose={() => setDialog(undefined)}
                />
            )}
        </div>
    );
}
