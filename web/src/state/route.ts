import { useEffect, useState } from "preact/hooks";
import { listNames, type ListName } from "../api/types";

export const views = [...listNames, "contacts", "times", "settings"] as const;
export type View = (typeof views)[number];

export const titles: Record<View, string> = {
    missed: "Missed",
    dialled: "Dialled",
    received: "Received",
    forwarded: "Forwarded",
    callbacks: "Callbacks",
    contacts: "Contacts",
    times: "Times",
    settings: "Settings",
};

export function isList(view: View): view is ListName {
    return (listNames as readonly string[]).includes(view);
}

function current(): View {
    const name = window.location.hash.replace(/^#\/?/, "");
    return views.find((view) => view === name) ?? "missed";
}

/** The view that the address names, so that the browser's back button and bookmarks work. */
export function useView(): View {
    const [view, setView] = useState(current);
    useEffect(() => {
        const follow = () => setView(current());
        window.addEventListener("hashchange", follow);
        return () => window.removeEventListener("hashchange", follow);
    }, []);
    return view;
}
