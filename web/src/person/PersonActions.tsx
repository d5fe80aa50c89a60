import { useState } from "preact/hooks";
import { api } from "../api/client";
import type { Call, Contact } from "../api/types";
import { ContactDialog } from "../contacts/ContactDialog";
import { CallButton } from "../dial/CallButton";
import { mayWrite } from "../state/rights";
import { isNew, markNew, markSeen } from "../state/seen";
import { wasTakenElsewhere } from "../state/unseen";
import { t } from "../text/language";
import { party, readParty } from "./person";

interface Props {
    name: string;
    /** Empty if it is withheld. */
    number: string;
    calls: readonly Call[];
}

/** Asks the server for the contact first: it may have been added or deleted meanwhile. */
async function contactNow(number: string): Promise<Contact | undefined> {
    return api.contactWith(number).catch(() => party.value?.contact ?? undefined);
}

export function PersonActions({ name, number, calls }: Props) {
    const [dialog, setDialog] = useState<{ contact?: Contact }>();
    const texts = t().person;
    const missed = calls.filter((call) => call.list === "missed" && call.uniqueId !== null && !wasTakenElsewhere(call));
    return (
        <div class="person-actions">
            {number && <CallButton number={number} who={name} large={party.value?.numberText || calls[0]?.numberText || number} />}
            {number && mayWrite.value && (
                <button
                    type="button"
                    data-test="add-contact"
                    onClick={() => void contactNow(number).then((contact) => setDialog(contact ? { contact } : {}))}
                >
                    {party.value?.contact ? texts.changeContact : texts.addContact}
                </button>
            )}
            {missed.length > 0 &&
                mayWrite.value &&
                (missed.some(isNew) ? (
                    <button type="button" data-test="mark-seen" onClick={() => markSeen(missed, true)}>
                        {texts.markSeen}
                    </button>
                ) : (
                    <button type="button" data-test="mark-new" onClick={() => markNew(missed.slice(0, 1))}>
                        {texts.markNew}
                    </button>
                ))}
            {dialog && (
                <ContactDialog
                    {...dialog}
                    first={{ ...namesOf(calls.find((call) => call.name)?.name ?? ""), office: number }}
                    onSaved={() => void readParty(number)}
                    onClose={() => setDialog(undefined)}
                />
            )}
        </div>
    );
}

/** The last word of a name is taken for the surname. */
function namesOf(name: string): { firstName: string; surname: string } {
    const words = name.trim().split(/\s+/);
    return { firstName: words.slice(0, -1).join(" "), surname: words[words.length - 1] ?? "" };
}
