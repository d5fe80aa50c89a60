import { useLayoutEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { contactFields, type Contact, type ContactField, type ContactValues } from "../api/types";
import { failures } from "../state/app";
import { reasonOf } from "../state/Failures";

const labels: Record<ContactField, string> = {
    firstName: "First name",
    surname: "Surname",
    company: "Company",
    office: "Number, office",
    mobile: "Number, mobile",
    private: "Number, private",
    office2: "Number, second office",
    email: "E-mail",
};
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
    useLayoutEffect(() => dialog.current?.showModal(), []);

    const save = async () => {
        if (saving.current) {
            return;
        }
        saving.current = true;
        try {
            await (contact ? api.changeContact(contact.id, values) : api.addContact(values));
            failures.clear("contact");
            onSaved();
            dialog.current?.close();
        } catch (error) {
            if (dialog.current?.open) {
                setRefusal(reasonOf(error));
            } else {
                failures.report("contact", "The contact was not saved", error);
            }
        }
        saving.current = false;
    };
    return (
        <dialog ref={dialog} aria-labelledby="contact-title" data-test="contact-dialog" onClose={onClose}>
            <h2 id="contact-title">{contact ? "Change the contact" : "New contact"}</h2>
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    void save();
                }}
            >
                {contactFields.map((name) => (
                    <label key={name}>
                        {labels[name]}
                        <input
                            name={name}
                            type={types[name] ?? "text"}
                            autocomplete="off"
                            value={values[name]}
                            onInput={(event) => setValues({ ...values, [name]: event.currentTarget.value })}
                        />
                    </label>
                ))}
                <p class="refusal" role="alert">
                    {refusal && `Not saved: ${refusal}`}
                </p>
                <div class="dialog-actions">
                    <button type="submit" class="main-button">
                        Save
                    </button>
                    <button type="button" onClick={() => dialog.current?.close()}>
                        Cancel
                    </button>
                    {onDelete && (
                        <button
                            type="button"
                            class="far-button"
                            onClick={() => {
                                onDelete();
                                dialog.current?.close();
                            }}
                        >
                            Delete
                        </button>
                    )}
                </div>
            </form>
        </dialog>
    );
}
