import type { RefObject } from "preact";
import { useEffect, useLayoutEffect, useRef } from "preact/hooks";
import type { Entry } from "../api/types";
import { journal } from "../state/app";
import { visiblePart } from "./useWindow";

const viewTime = 2500;

/** Marks missed entries as viewed after they were visible for a moment: in a visible window, not scrolled out. */
export function useMarkViewed(box: RefObject<HTMLElement>, entries: readonly Entry[], rowHeight: number): void {
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
            const { top, bottom } = visiblePart(element);
            const first = Math.max(0, Math.ceil(top / rowHeight - 0.5));
            const last = Math.max(0, Math.floor(bottom / rowHeight + 0.5));
            const seen = latest.current.slice(first, last).filter((each) => each.viewed === false && !journal.isKeptNew(each));
            const ids = new Set(seen.map((each) => each.entryId));
            [...since.keys()].filter((id) => !ids.has(id)).forEach((id) => since.delete(id));
            const now = performance.now();
            ids.forEach((id) => since.set(id, since.get(id) ?? now));
            const viewed = [...ids].filter((id) => now - (since.get(id) ?? now) >= viewTime);
            if (viewed.length > 0) {
                viewed.forEach((id) => since.delete(id));
                journal.markViewed(viewed);
            }
        };
        const timer = window.setInterval(look, 500);
        return () => window.clearInterval(timer);
    }, [box, rowHeight]);
}

/** Marks an open entry as viewed: when it is opened, gets a further call, or its window becomes visible. */
export function useMarkOpenedViewed(entry: Entry): void {
    const latest = useRef(entry);
    latest.current = entry;
    useLayoutEffect(() => journal.onOpened(entry), []);
    useLayoutEffect(() => {
        const look = () => {
            if (latest.current.viewed === false && !journal.isKeptNew(latest.current) && document.visibilityState === "visible") {
                journal.markViewed([latest.current.entryId]);
            }
        };
        look();
        document.addEventListener("visibilitychange", look);
        return () => document.removeEventListener("visibilitychange", look);
    }, [entry.entryId]);
}
