import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { failures } from "../state/app";

/** The user's note about a number. Stored when the field loses the focus, and when the entry or the page is closed. */
export function PartyNote({ number }: { number: string }) {
    const [note, setNote] = useState<string>();
    const [isStored, setStored] = useState(false);
    const typed = useRef("");
    const stored = useRef("");

    const store = () => {
        const text = typed.current;
        if (text === stored.current) {
            return;
        }
        const before = stored.current;
        stored.current = text;
        api.setNote(number, text).then(
            () => {
                failures.clear("note");
                setStored(true);
            },
            (error: unknown) => {
                stored.current = before;
                failures.report("note", `The note about ${number} was not stored`, error);
            },
        );
    };
    useEffect(() => {
        api.party(number).then(
            (party) => {
                typed.current = stored.current = party.note;
                setNote(party.note);
            },
            (error: unknown) => failures.reportOnce("note", "The note could not be read", error),
        );
        window.addEventListener("pagehide", store);
        return () => {
            window.removeEventListener("pagehide", store);
            store();
        };
    }, [number]);
    if (note === undefined) {
        return null;
    }
    return (
        <div class="note">
            <label for="note">Note about this number</label>
            <span role="status" class="hint">
                {isStored && "stored"}
            </span>
            <textarea
                id="note"
                rows={2}
                data-test="note"
                value={note}
                onInput={(event) => {
                    typed.current = event.currentTarget.value;
                    setNote(typed.current);
                    setStored(false);
                }}
                onBlur={store}
            />
        </div>
    );
}
