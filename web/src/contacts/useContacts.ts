import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { Contact } from "../api/types";
import { isHidden } from "../state/deletions";
import { reportOnce, succeeded } from "../state/failures";
import { t } from "../text/language";

const atOnce = 200;
const collator = new Intl.Collator(undefined, { sensitivity: "base" });

/** The name by which people look for a contact. */
export const sortName = ({ surname, firstName, company }: Contact) => surname || firstName || company;

/** The server puts contacts without a surname first. Those that it did not send have their places there. */
function inOrder({ total, contacts }: { total: number; contacts: Contact[] }) {
    return { total, contacts: contacts.length === total ? [...contacts].sort((one, other) => collator.compare(sortName(one), sortName(other))) : contacts };
}
const typingPause = 150;
const retryPause = 2000;

/** The contacts that match a text. Requested shortly after the user stops typing, and again after a failure. */
export function useContacts(search: string, version: number) {
    const [found, setFound] = useState<{ total: number; contacts: Contact[] }>();
    const [failed, setFailed] = useState(0);
    const failedBefore = useRef(0);
    useEffect(() => {
        let current = true;
        const isRetry = failed !== failedBefore.current;
        failedBefore.current = failed;
        const timer = window.setTimeout(() => {
            api.contacts(search.trim(), atOnce).then(
                (response) => {
                    succeeded("contacts");
                    return current && setFound(inOrder(response));
                },
                (error: unknown) => {
                    if (current) {
                        reportOnce("contacts", () => t().errors.contacts, error);
                        setFailed((count) => count + 1);
                    }
                },
            );
        }, isRetry ? retryPause : typingPause);
        return () => {
            current = false;
            window.clearTimeout(timer);
        };
    }, [search, version, failed]);
    const contacts = found?.contacts.filter((each) => !isHidden("contacts", each.id));
    return found && contacts && { contacts, total: found.total - (found.contacts.length - contacts.length) };
}
