import type { CallList, CountedGroup, Quarter } from "../api/types";
import { callLists } from "../api/types";
import { dayStart, isoDay } from "../text/times";
import type { Figures } from "./useStatistics";

export interface Day {
    date: Date;
    taken: number;
    missed: number;
    dialled: number;
    forwarded: number;
    elsewhere: number;
    calls: number;
    talkTime: number;
    callBackTime: number | null;
}

/** Every day of the period, today last; the server leaves out days without calls. */
export function daysOf({ first, days }: Figures): Day[] {
    const byKey = new Map<string, CountedGroup>(days.map((each) => [each.key, each]));
    const all: Day[] = [];
    const end = dayStart(new Date());
    for (let date = first; date <= end; date = dayStart(date, 1)) {
        const { calls = 0, answered: taken = 0, missed = 0, dialled = 0, forwarded = 0, completedElsewhere: elsewhere = 0, talkTime = 0, callBackTime = null } = byKey.get(isoDay(date)) ?? {};
        all.push({ date, taken, missed, dialled, forwarded, elsewhere, calls, talkTime, callBackTime });
    }
    return all;
}

/** The number of calls that began in each hour of each weekday, Monday first, in the user's time zone. */
export function busyHours(quarters: readonly Quarter[], list: CallList | undefined): number[][] {
    const hours = Array.from({ length: 7 }, () => new Array<number>(24).fill(0));
    for (const quarter of quarters) {
        const begin = new Date(quarter.time);
        const row = hours[(begin.getDay() + 6) % 7];
        const calls = list ? quarter[list] : callLists.reduce((sum, each) => sum + quarter[each], 0);
        if (row) {
            row[begin.getHours()] = (row[begin.getHours()] ?? 0) + calls;
        }
    }
    return hours;
}

/** Returns 0 to 4; `most`, the largest number of calls in an hour, has level 4. */
export function level(count: number, most: number): number {
    return Math.ceil((count * 4) / most);
}

export interface Shade {
    level: number;
    from: number;
    to: number;
}

/** The counts of each level. With few calls some levels are unused. */
export function shades(most: number): Shade[] {
    const levels = [1, 2, 3, 4].map((each) => ({ level: each, from: Math.floor(((each - 1) * most) / 4) + 1, to: Math.floor((each * most) / 4) }));
    return [{ level: 0, from: 0, to: 0 }, ...levels.filter(({ from, to }) => from <= to)];
}
