import type { ListName } from "../api/types";

const texts: Record<ListName, { title: string; text: string }> = {
    missed: { title: "No missed calls", text: "Calls that nobody answers appear here by themselves." },
    dialled: { title: "No dialled calls", text: "Dial a number on the phone: the call appears here when it is over." },
    received: { title: "No received calls", text: "Calls that you answer appear here when they are over." },
    forwarded: {
        title: "No forwarded calls",
        text: "Calls that the switch sends on to somebody else appear here, if the phone's setting server-based-features is on.",
    },
    callbacks: { title: "No callbacks", text: "Ask the switch for a callback when a line is busy or nobody answers: it stands here until it is over." },
};

interface Props {
    list: ListName;
    search: string;
    read: boolean;
    onClear: () => void;
}

export function EmptyList({ list, search, read, onClear }: Props) {
    if (!read) {
        return <p class="empty">Reading the list …</p>;
    }
    if (search.trim()) {
        return (
            <div class="empty">
                <h2>Nothing found</h2>
                <p>
                    No name or number in this list has “<bdi>{search.trim()}</bdi>” in it.
                </p>
                <button type="button" onClick={onClear}>
                    Show all
                </button>
            </div>
        );
    }
    return (
        <div class="empty">
            <h2>{texts[list].title}</h2>
            <p>{texts[list].text}</p>
        </div>
    );
}
