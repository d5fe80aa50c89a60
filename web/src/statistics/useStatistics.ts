import { useEffect, useRef, useState } from "preact/hooks";
import { api, zone } from "../api/client";
import type { CallList, Quarter, Statistics } from "../api/types";
import { version } from "../state/connection";
import { reportOnce, succeeded } from "../state/failures";
import { t } from "../text/language";
import { dayStart, isoDay } from "../text/times";

const pause = 2000;

export interface Figures {
    /** The first day of the period. */
    first: Date;
    totals: Statistics["totals"];
    parties: Statistics["topParties"];
    days: Statistics["groups"];
    quarters: Quarter[];
}

async function read(days: number, list: CallList | undefined): Promise<Figures> {
    const first = dayStart(new Date(), 1 - days);
    const query = (more: Record<string, string>) => new URLSearchParams({ since: isoDay(first), tz: zone, ...(list && { list }), ...more });
    const [all, byDay, times] = await Promise.all([api.statistics(query({})), api.statistics(query({ by: "day" })), api.times(first)]);
    return { first, totals: all.totals, parties: all.topParties, days: byDay.groups, quarters: times.quarters };
}

/** The figures of the latest days, for all lists or one. Read again after changes, but at most once in `pause` ms. */
export function useStatistics(days: number, list: CallList | undefined): Figures | undefined {
    const [figures, setFigures] = useState<Figures>();
    const readAt = useRef(-pause);
    const wanted = useRef("");
    useEffect(() => {
        let isCurrent = true;
        const key = `${days} ${list}`;
        const wait = key === wanted.current ? Math.max(0, readAt.current + pause - performance.now()) : 0;
        wanted.current = key;
        const timer = window.setTimeout(() => {
            readAt.current = performance.now();
            read(days, list).then(
                (found) => {
                    succeeded("statistics");
                    return isCurrent && setFigures(found);
                },
                (error: unknown) => reportOnce("statistics", () => t().errors.statistics, error),
            );
        }, wait);
        return () => {
            isCurrent = false;
            window.clearTimeout(timer);
        };
    }, [days, list, version.value]);
    return figures;
}
