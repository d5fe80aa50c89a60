import type { ListName } from "../api/types";
import { lineState, settings } from "../state/app";
import { useStore } from "../state/Store";

const texts: Record<ListName, { title: string; text: string }> = {
    missed: { title: "No missed calls", text: "Calls that are not answered appear here." },
    dialled: { title: "No dialled calls", text: "Dial a number on the phone: the call appears here when it is over." },
    received: { title: "No received calls", text: "Calls that were answered here appear when they are over." },
    forwarded: {
        title: "No forwarded calls",
        text:
            "Calls that the switch forwards appear here if the phone's setting server-based-features is true. " +
            "This command sets it: calljournal settings server-based-features true",
    },
    callbacks: { title: "No callbacks", text: "Request a callback from the switch when a line is busy or a call is not answered: it is listed here until it is done." },
};

/** The reason why a list may be empty although there were calls. Callbacks are always kept. */
function SwitchedOff() {
    const isSip = useStore(lineState).status?.softwareType === "Norlith SIP";
    return (
        <p>
            The call journal is switched off, which has emptied the lists of calls.{" "}
            {isSip ? "No call is filed until it is on again" : "New calls are filed all the same on this kind of phone"}:{" "}
            <a href="#/settings">Settings</a>.
        </p>
    );
}

interface Props {
    list: ListName;
    search: string;
    read: boolean;
    onClear: () => void;
}

export function EmptyList({ list, search, read, onClear }: Props) {
    const isOff = useStore(settings).isJournalOff() && list !== "callbacks";
    if (!read) {
        return <p class="empty">Reading the list …</p>;
    }
    const found = search.trim();
    return (
        <div class="empty">
            <h2 tabIndex={-1} data-focus-target>
                {found ? "No entry found" : texts[list].title}
            </h2>
            {found ? (
                <>
                    <p>
                        No name or number in this list has “<bdi>{found}</bdi>” in it.
                    </p>
                    <button type="button" onClick={onClear}>
                        Show all
                    </button>
                </>
            ) : isOff ? (
                <SwitchedOff />
            ) : (
                <p>{texts[list].text}</p>
            )}
        </div>
    );
}
