import { useEffect, useRef } from "preact/hooks";
import { isKeptNew, isNew, markSeen } from "../state/seen";
import { isInBackground } from "../state/news";
import type { Group } from "./rows";

const seeTime = 2500;
const lookPause = 500;

/** Marks missed calls as seen after their rows were visible for a moment in a window that has the focus. `visible` returns those rows. */
export function useMarkSeen(visible: () => readonly Group[]): void {
    const latest = useRef(visible);
    latest.current = visible;
    useEffect(() => {
        const since = new Map<number, number>();
        const look = () => {
            const calls = isInBackground() ? [] : latest.current().flatMap((group) => group.calls.filter((call) => isNew(call) && !isKeptNew(call)));
            const ids = new Set(calls.map(({ id }) => id));
            [...since.keys()].filter((id) => !ids.has(id)).forEach((id) => since.delete(id));
            const now = performance.now();
            ids.forEach((id) => since.set(id, since.get(id) ?? now));
            markSeen(calls.filter(({ id }) => now - (since.get(id) ?? now) >= seeTime), false);
        };
        const timer = window.setInterval(look, lookPause);
        return () => window.clearInterval(timer);
    }, []);
}
