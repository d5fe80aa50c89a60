import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { report, succeeded } from "../state/failures";
import { t } from "../text/language";
import { readParty } from "./person";

/** The note for one who may not change it. */
export function NoteText({ note }: { note: string }) {
    return note ? (
        <div class="note" data-test="note-text">
            <h3>{t().person.note}</h3>
            <p>{note}</p>
        </div>
    ) : null;
}

/** The user's note about a number. Stored when the field loses the focus, and when the person or the page is closed. */
export function Note({ number, stored: first }: { number: string; stored: string }) {
    const [note, setNote] = useState(first);
    const [state, setState] = useState<"stored" | "both" | undefined>();
    const typed = useRef(first);
    const stored = useRef(first);

    const send = (text: string, before: string) => {
        stored.current = text;
        return api.setNote(number, text).then(
            () => {
                succeeded("note");
                setState("stored");
            },
            (error: unknown) => {
                stored.current = before;
                report("note", () => t().errors.note, error);
            },
        );
    };
    /** Without a moment to ask for the present note, as when the page is left, the text is sent as it is. */
    const sendNow = () => {
        if (typed.current !== stored.current) {
            void send(typed.current, stored.current);
        }
    };
    /** `isLast`: the user cannot be asked any more; both texts are stored then. */
    const store = async (isLast = false) => {
        const [text, before] = [typed.current, stored.current];
        if (text === before) {
            return;
        }
        const now = await api.party(number).then(({ note: known }) => known, () => before);
        if (now === before || now === text) {
            await send(text, before);
        } else if (isLast || typed.current === text) {
            typed.current = [now, text].filter(Boolean).join("\n");
            stored.current = now;
            if (isLast) {
                await send(typed.current, now);
                return;
            }
            setNote(typed.current);
            setState("both");
        }
    };
    useEffect(() => {
        // Another client has changed the note; what is typed here and not stored yet goes first.
        if (first !== stored.current && typed.current === stored.current) {
            typed.current = stored.current = first;
            setNote(first);
        }
    }, [first]);
    useEffect(() => {
        window.addEventListener("pagehide", sendNow);
        return () => {
            window.removeEventListener("pagehide", sendNow);
            void store(true);
        };
    }, [number]);
    return (
        <div class="note">
            <label for="note">{t().person.note}</label>
            <span role="status" class="hint">
                {state === "stored" && t().person.stored}
                {state === "both" && t().person.bothNotes}
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
                    setState(undefined);
                }}
                onFocus={() => void readParty(number)}
                onBlur={() => void store()}
            />
        </div>
    );
}
