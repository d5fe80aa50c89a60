import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { report, succeeded } from "../state/failures";
import { t } from "../text/language";
import { readParty } from "./person";

/** The user's note about a number. Stored when the field loses the focus, and when the person or the page is closed. */
export function Note({ number, stored: first }: { number: string; stored: string }) {
    const [note, setNote] = useState(first);
    const [isStored, setStored] = useState(false);
    const typed = useRef(first);
    const stored = useRef(first);

    const store = () => {
        const [text, before] = [typed.current, stored.current];
        if (text === before) {
            return;
        }
        stored.current = text;
        api.setNote(number, text).then(
            () => {
                succeeded("note");
                setStored(true);
            },
            (error: unknown) => {
                stored.current = before;
                report("note", () => t().errors.note, error);
            },
        );
    };
    useEffect(() => {
        // Another client has changed the note; what is typed here and not stored yet goes first.
        if (first !== stored.current && typed.current === stored.current) {
            typed.current = stored.current = first;
            setNote(first);
        }
    }, [first]);
    useEffect(() => {
        window.addEventListener("pagehide", store);
        return () => {
            window.removeEventListener("pagehide", store);
            store();
        };
    }, [number]);
    return (
        <div class="note">
            <label for="note">{t().person.note}</label>
            <span role="status" class="hint">
                {isStored && t().person.stored}
            </span>
            <textarea
                id="note"
                rows={2}
                data-test="note"
                placeholder={t().person.notePlaceholder}
                value={note}
                onInput={(event) => {
                    typed.current = event.currentTarget.value;
                    setNote(typed.current);
                    setStored(false);
                }}
                onFocus={() => void readParty(number)}
                onBlur={store}
            />
        </div>
    );
}
