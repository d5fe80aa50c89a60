import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { ListName, Quarter } from "../api/types";
import { failures, journal } from "../state/app";
import { useStore } from "../state/Store";
import { firstDay } from "./callTimes";

const pause = 3000;
const callLists: ListName[] = ["missed", "dialled", "received", "forwarded"];

/**
 * The calls of the last four weeks. Requested at once, after each change of a list of calls and after a failure, but at most once in
 * `pause` ms. Undefined until the first response.
 */
export function useQuarters(): Quarter[] | undefined {
    const [quarters, setQuarters] = useState<Quarter[]>();
    const [failed, setFailed] = useState(0);
    const requestedAt = useRef(-pause);
    const shownRequest = useRef(-pause);
    useStore(journal);
    const request = async () => {
        const begin = performance.now();
        requestedAt.current = begin;
        try {
            const found = await api.times(firstDay());
            if (begin > shownRequest.current) {
                shownRequest.current = begin;
                setQuarters(found.quarters);
            }
            setFailed(0);
            failures.clear("times");
        } catch (error) {
            failures.reportOnce("times", "The calls could not be counted", error);
            setFailed((count) => count + 1);
        }
    };
    useEffect(
        () => {
            const timer = window.setTimeout(() => void request(), Math.max(0, requestedAt.current + pause - performance.now()));
            return () => window.clearTimeout(timer);
        },
        [failed, ...callLists.map((list) => journal.entries(list))],
    );
    return quarters;
}
