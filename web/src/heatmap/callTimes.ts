import type { Quarter } from "../api/types";
import { dayStart } from "../text/times";

const days = 28;

export interface Day {
    date: Date;
    /** The number of calls that began in each hour, in the user's time zone. */
    hours: number[];
    total: number;
}

/** The first day of the four weeks that end today. */
export function firstDay(now = new Date()): Date {
    return dayStart(now, 1 - days);
}

/** The last four weeks, today last. In every time zone, hours and days begin with a quarter of an hour. */
export function callsByDay(quarters: readonly Quarter[], now = new Date()): Day[] {
    const found: Day[] = Array.from({ length: days }, (_, at) => ({
        date: dayStart(now, at - days + 1),
        hours: new Array<number>(24).fill(0),
        total: 0,
    }));
    const dayByTime = new Map(found.map((day) => [day.date.getTime(), day]));
    for (const { time, missed, dialled, received, forwarded } of quarters) {
        const begin = new Date(time);
        const day = dayByTime.get(dayStart(begin).getTime());
        if (day) {
            const calls = missed + dialled + received + forwarded;
            const hour = begin.getHours();
            day.hours[hour] = (day.hours[hour] ?? 0) + calls;
            day.total += calls;
        }
    }
    return found;
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
