import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { contactFields, type Contact, type ContactField, type ContactValues } from "../api/types";

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
    /** The contact to change; without it a new one is made. */
    contact?: Contact;
    /** What a new one begins with. */
    first?: Partial<ContactValues>;
    onClose: (changed: boolean) => void;
}

export function ContactDialog({ contact, first, onClose }: Props) {
    const dialog = useRef<HTMLDialogElement>(null);
    const [refusal, setRefusal] = useState("");
    const [values, setValues] = useState<ContactValues>(
        () => Object.fromEntries(contactFields.map((name) => [name, contact?.[name] ?? first?.[name] ?? ""])) as ContactValues,
    );
    useEffect(() => dialog.current?.showModal(), []);

    const save = async (work: () => Promise<unknown>) => {
        try {
            await work();
            onClose(true);
        } catch (error) {
            setRefusal((error as Error).message);
        }
    };
    return (
        <dialog ref={dialog} aria-labelledby="contact-title" data-test="contact-dialog" onClose={() => onClose(false)}>
            <h2 id="contact-title">{contact ? "Change the contact" : "New contact"}</h2>
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    void save(() => (contact ? api.changeContact(contact.id, values) : api.addContact(values)));
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
                    {refusal && `Not saved: ${refusal}.`}
                </p>
                <div class="dialog-actions">
                    <button type="submit" class="main-button">
                        Save
                    </button>
                    <button type="button" onClick={() => onClose(false)}>
                        Cancel
                    </button>
                    {contact && (
                        <button type="button" class="far-button" onClick={() => void save(() => api.deleteContact(contact.id))}>
                            Delete
                        </button>
                    )}
                </div>
            </form>
        </dialog>
    );
}
