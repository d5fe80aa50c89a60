import { signal } from "@preact/signals";
import type { Entry } from "../api/types";
import { t } from "../text/language";
import { titleOf } from "../text/people";

const storageKey = "calljournal.notifications";

/** Live-region text for screen readers; the serial number differs when the same text comes twice. */
export const announcement = signal({ text: "", count: 0 });

/** The latest call that was missed while the page was in the background, for the title; undefined in the foreground. */
export const missedInBackground = signal<string | undefined>(undefined);

/** True if the user wants notifications and the browser allows them. */
export const notifies = signal(window.localStorage.getItem(storageKey) === "on" && "Notification" in window && Notification.permission === "granted");

export function isInBackground(): boolean {
    return document.visibilityState !== "visible" || !document.hasFocus();
}

export function announce(text: string): void {
    announcement.value = { text, count: announcement.value.count + 1 };
}

/** Asks the browser for its permission if need be. Returns false if the browser does not allow notifications. */
export async function setNotifies(on: boolean): Promise<boolean> {
    const allowed = on && "Notification" in window && (await Notification.requestPermission()) === "granted";
    window.localStorage.setItem(storageKey, allowed ? "on" : "off");
    notifies.value = allowed;
    return allowed || !on;
}

let latest = "";

/** Reports a missed call, once for each call although an entry may change several times. */
export function onMissedCall(entry: Entry & { entryId?: string; time?: string }): void {
    const key = `${entry.uniqueId} ${entry.time}`;
    if (key === latest || entry.occurrences?.[0]?.completedElsewhere) {
        return;
    }
    latest = key;
    const text = t().news.missed(titleOf(entry));
    announce(text);
    if (isInBackground()) {
        missedInBackground.value = text;
        if (notifies.value) {
            const shown = new Notification(t().name, { body: text, tag: key, icon: "./icon-192.png" });
            shown.onclick = () => {
                window.focus();
                shown.close();
            };
        }
    }
}

/** Ends the news in the title when the user returns. */
function onReturn(): void {
    if (!isInBackground()) {
        missedInBackground.value = undefined;
    }
}

document.addEventListener("visibilitychange", onReturn);
window.addEventListener("focus", onReturn);
