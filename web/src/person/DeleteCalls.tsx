import { useState } from "preact/hooks";
import { api } from "../api/client";
import type { Call } from "../api/types";
import { ConfirmDialog } from "../frame/Dialog";
import { deleteLater } from "../state/deletions";
import { report, succeeded } from "../state/failures";
import { announce } from "../state/news";
import { closeDetails } from "../state/route";
import { t } from "../text/language";
import { party } from "./person";

interface Props {
    name: string;
    /** Empty if it is withheld: then the shown calls are deleted, with undo. */
    number: string;
    calls: readonly Call[];
}

async function erase(number: string, name: string): Promise<void> {
    try {
        await api.deleteCalls(new URLSearchParams({ number }));
        succeeded("erase");
        announce(t().person.erased(name));
        closeDetails();
    } catch (error) {
        report("erase", () => t().errors.delete, error);
    }
}

/** The last line of a person: deletes everything but the contact, after a question. */
export function DeleteCalls({ name, number, calls }: Props) {
    const [isAsking, setAsking] = useState(false);
    const texts = t().person;
    const count = number ? (party.value?.calls ?? calls.length) : calls.length;
    if (count === 0 && !party.value?.note) {
        return null;
    }
    const confirm = () => {
        if (number) {
            void erase(number, name);
        } else {
            deleteLater("calls", calls.map(({ id }) => id));
            closeDetails();
        }
    };
    return (
        <p class="person-end">
            <button type="button" class="link-button" data-test={number ? "erase" : "delete-these"} onClick={() => setAsking(true)}>
                {number ? texts.erase : texts.eraseThese}
            </button>
            {isAsking && (
                <ConfirmDialog
                    title={number ? texts.eraseTitle(count, name) : texts.eraseTheseTitle(count)}
                    action={t().delete}
                    isDangerous
                    onConfirm={confirm}
                    onClose={() => setAsking(false)}
                >
                    {number ? [texts.eraseText(party.value?.numberText || number, Boolean(party.value?.note)), party.value?.contact && texts.contactStays, texts.isFinal].filter(Boolean).join(" ") : texts.eraseTheseText}
                </ConfirmDialog>
            )}
        </p>
    );
}
