import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { numberFields, type Contact } from "../api/types";
import { journal } from "../state/app";
import { fullName, plural } from "../text/names";
import { ContactDialog } from "./ContactDialog";

const atOnce = 200;

/** What the phonebook has for a text; asked a moment after the reader has stopped typing. */
function useContacts(search: string, version: number) {
    const [found, setFound] = useState<{ total: number; contacts: Contact[] }>();
    useEffect(() => {
        let current = true;
        const timer = window.setTimeout(() => {
            api.contacts(search.trim(), atOnce).then(
                (answer) => current && setFound(answer),
                (error: unknown) => current && journal.fail(error),
            );
        }, 150);
        return () => {
            current = false;
            window.clearTimeout(timer);
        };
    }, [search, version]);
    return found;
}

export function ContactsView() {
    const [search, setSearch] = useState("");
    const [version, setVersion] = useState(0);
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    const opener = useRef<HTMLElement | null>(null);
    const found = useContacts(search, version);
    const open = (contact?: Contact) => {
        opener.current = document.activeElement as HTMLElement | null;
        setDialog(contact ? { contact } : {});
    };
    return (
        <div class="view">
            <div class="tools" role="search">
                <input
                    type="search"
                    aria-label="Search contacts"
                    placeholder="Name, number, company"
                    value={search}
                    onInput={(event) => setSearch(event.currentTarget.value)}
                />
                <button type="button" class="main-button" onClick={() => open()}>
                    New contact
                </button>
            </div>
            <p role="status" class="hint">
                {found && plural(found.total, "contact", "contacts")}
                {found && found.total > found.contacts.length && `, the first ${found.contacts.length} of them here: search for the others`}
            </p>
            {found?.total === 0 && (
                <div class="empty">
                    <h2>{search.trim() ? "Nothing found" : "No contacts"}</h2>
                    <p>
                        {search.trim()
                            ? "No name, number, company or e-mail address has this text in it."
                            : "Add one here or from an entry of a list, or import a file with the command “calljournal contacts import”."}
                    </p>
                </div>
            )}
            <ul class="contacts">
                {found?.contacts.map((contact) => (
                    <li key={contact.id}>
                        <button type="button" data-test="contact" onClick={() => open(contact)}>
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
                    onClose={(changed) => {
                        setDialog(undefined);
                        setVersion(changed ? version + 1 : version);
                        opener.current?.focus();
                    }}
                />
            )}
        </div>
    );
}
