import { useEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { ListName, Quarter } from "../api/types";
import { failures, journal } from "../state/app";
import { useStore } from "../state/Store";
import { firstDay } from "./callTimes";

const pause = 3000;
const callLists: ListName[] = ["missed", "dialled", "received", "forwarded"];

/**
 * The calls of the last four weeks: asked for at once, after each change of a list of calls, and after a failure, but at most once in
 * every pause. Undefined until there was an answer.
 */
export function useQuarters(): Quarter[] | undefined {
    const [quarters, setQuarters] = useState<Quarter[]>();
    const [failed, setFailed] = useState(0);
    const asked = useRef(-pause);
    const answered = useRef(-pause);
    useStore(journal);
    const ask = async () => {
        const begin = performance.now();
        asked.current = begin;
        try {
            const found = await api.times(firstDay());
            if (begin > answered.current) {
                answered.current = begin;
                setQuarters(found.quarters);
            }
            setFailed(0);
            failures.settle("times");
        } catch (error) {
            failures.tellOnce("times", "The calls could not be counted", error);
            setFailed((count) => count + 1);
        }
    };
    useEffect(
        () => {
            const timer = window.setTimeout(() => void ask(), Math.max(0, asked.current + pause - performance.now()));
            return () => window.clearTimeout(timer);
        },
        [failed, ...callLists.map((list) => journal.entries(list))],
    );
    return quarters;
}
