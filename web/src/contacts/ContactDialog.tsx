import { useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { contactFields, type Contact, type ContactField, type ContactValues } from "../api/types";
import { Window } from "../frame/Window";
import { reasonOf, report, succeeded } from "../state/failures";
import { t } from "../text/language";

const types: Partial<Record<ContactField, string>> = { office: "tel", mobile: "tel", private: "tel", office2: "tel", email: "email" };

interface Props {
    /** The contact to change; undefined for a new one. */
    contact?: Contact;
    /** First values of a new contact. */
    first?: Partial<ContactValues>;
    onDelete?: () => void;
    /** The dialog is closed and the focus restored. */
    onClose: () => void;
    /** The journal has stored the contact; the user may have closed the dialog before. */
    onSaved: () => void;
}

export function ContactDialog({ contact, first, onDelete, onClose, onSaved }: Props) {
    const dialog = useRef<HTMLDialogElement>(null);
    const [refusal, setRefusal] = useState("");
    const [values, setValues] = useState<ContactValues>(
        () => Object.fromEntries(contactFields.map((name) => [name, contact?.[name] ?? first?.[name] ?? ""])) as ContactValues,
    );
    const saving = useRef(false);
    const texts = t().contacts;

    const save = async () => {
        if (saving.current) {
            return;
        }
        saving.current = true;
        try {
            await (contact ? api.changeContact(contact.id, values) : api.addContact(values));
            succeeded("contact");
            onSaved();
            dialog.current?.close();
        } catch (error) {
            if (dialog.current?.open) {
                setRefusal(reasonOf(error));
            } else {
                report("contact", () => t().errors.contact, error);
            }
        }
        saving.current = false;
    };
    return (
        <Window dialog={dialog} title={contact ? texts.change : texts.add} test="contact-dialog" onClose={onClose}>
            <form
                // The journal judges the values; a browser that refuses an address would do so in its own words.
                noValidate
                onSubmit={(event) => {
                    event.preventDefault();
                    void save();
                }}
            >
                {contactFields.map((name) => (
                    <label key={name} class={`field-${name}`}>
                        {texts.fields[name]}
                        <input
                            name={name}
                            type={types[name] ?? "text"}
                            autocomplete="off"
                            value={values[name]}
                            onInput={(event) => {
                                const { value } = event.currentTarget;
                                setValues((before) => ({ ...before, [name]: value }));
                            }}
                        />
                    </label>
                ))}
                <p class="refusal" role="alert">
                    {refusal && texts.notSaved(refusal)}
                </p>
                <div class="dialog-actions">
                    {onDelete && (
                        <button
                            type="button"
                            class="far-button danger-text"
                            onClick={() => {
                                onDelete();
                                dialog.current?.close();
                            }}
                        >
                            {t().delete}
                        </button>
                    )}
                    <button type="button" onClick={() => dialog.current?.close()}>
                        {t().cancel}
                    </button>
                    <button type="submit" class="main-button">
                        {t().save}
                    </button>
                </div>
            </form>
        </Window>
    );
}
