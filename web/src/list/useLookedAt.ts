import type { RefObject } from "preact";
import { useEffect, useLayoutEffect, useRef } from "preact/hooks";
import type { Entry } from "../api/types";
import { journal } from "../state/app";
import { seenPart } from "./useWindow";

const lookTime = 2500;

/** Marks missed entries as viewed that have stood before the reader's eyes for a moment: in a window that is shown, not scrolled away. */
export function useLookedAt(box: RefObject<HTMLElement>, entries: readonly Entry[], rowHeight: number): void {
    const latest = useRef(entries);
    latest.current = entries;
    useEffect(() => {
        const since = new Map<string, number>();
        const look = () => {
            const element = box.current;
            if (!element || document.visibilityState !== "visible" || element.clientHeight === 0) {
                since.clear();
                return;
            }
            const { top, bottom } = seenPart(element);
            const first = Math.max(0, Math.ceil(top / rowHeight - 0.5));
            const last = Math.max(0, Math.floor(bottom / rowHeight + 0.5));
            const seen = latest.current.slice(first, last).filter((each) => each.viewed === false);
            const ids = new Set(seen.map((each) => each.entryId));
            [...since.keys()].filter((id) => !ids.has(id)).forEach((id) => since.delete(id));
            const now = performance.now();
            ids.forEach((id) => since.set(id, since.get(id) ?? now));
            const looked = [...ids].filter((id) => now - (since.get(id) ?? now) >= lookTime);
            if (looked.length > 0) {
                looked.forEach((id) => since.delete(id));
                journal.markViewed(looked);
            }
        };
        const timer = window.setInterval(look, 500);
        return () => window.clearInterval(timer);
    }, [box, rowHeight]);
}

/** Marks an entry that is open as viewed: when it is opened or gets a further call, or else when its window is shown. */
export function useOpened(entry: Entry): void {
    const latest = useRef(entry);
    latest.current = entry;
    useLayoutEffect(() => {
        const look = () => {
            if (latest.current.viewed === false && document.visibilityState === "visible") {
                journal.markViewed([latest.current.entryId]);
            }
        };
        look();
        document.addEventListener("visibilitychange", look);
        return () => document.removeEventListener("visibilitychange", look);
    }, [entry.entryId]);
}
