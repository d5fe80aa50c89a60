import { numberFields, type Contact } from "../api/types";
import { CallButton } from "../dial/CallButton";
import { Avatar } from "../frame/Avatar";
import { t } from "../text/language";
import { fullName } from "../text/people";

interface Props {
    contact: Contact;
    /** Takes the focus when the focused contact is removed. */
    isTarget: boolean;
    onOpen: () => void;
}

export function contactTitle(contact: Contact): string {
    return fullName(contact) || contact.company || t().contacts.noName;
}

export function ContactRow({ contact, isTarget, onOpen }: Props) {
    const numbers = numberFields.filter((name) => contact[name]);
    const [first] = numbers;
    const facts = [fullName(contact) && contact.company, ...numbers.map((name) => contact.numberTexts[name])].filter(Boolean);
    const title = contactTitle(contact);
    return (
        <li class="row contact-row">
            <Avatar name={fullName(contact) || contact.company} picture={contact.picture} />
            <button type="button" class="row-main" data-test="contact" data-focus-target={isTarget || undefined} onClick={onOpen}>
                <span class="row-name">
                    <bdi>{title}</bdi>
                </span>
                <span class="row-facts">
                    <span class="row-words">
                        {facts.map((fact, at) => (
                            <span key={fact} class="row-fact">
                                {at > 0 ? ` · ${fact}` : fact}
                            </span>
                        ))}
                    </span>
                </span>
            </button>
            {first ? <CallButton number={contact[first]} who={title} /> : <span class="call-place" />}
        </li>
    );
}
