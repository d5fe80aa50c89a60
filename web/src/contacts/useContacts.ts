import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { Contact } from "../api/types";
import { deletions, failures } from "../state/app";

const atOnce = 200;
const typingPause = 150;
const retryPause = 2000;

/** What the phonebook has for a text; asked a moment after the reader has stopped typing, and again as long as that fails. */
export function useContacts(search: string, version: number) {
    const [found, setFound] = useState<{ total: number; contacts: Contact[] }>();
    const [failed, setFailed] = useState(0);
    const pause = useRef(typingPause);
    useEffect(() => {
        let current = true;
        const timer = window.setTimeout(() => {
            api.contacts(search.trim(), atOnce).then(
                (answer) => {
                    failures.settle("contacts");
                    if (current) {
                        pause.current = typingPause;
                        setFound(answer);
                    }
                },
                (error: unknown) => {
                    if (current) {
                        failures.tellOnce("contacts", "The contacts could not be read", error);
                        pause.current = retryPause;
                        setFailed((count) => count + 1);
                    }
                },
            );
        }, pause.current);
        return () => {
            current = false;
            window.clearTimeout(timer);
        };
    }, [search, version, failed]);
    const contacts = found?.contacts.filter((each) => !deletions.isHidden("contacts", each.id));
    return found && contacts && { contacts, total: found.total - (found.contacts.length - contacts.length) };
}
