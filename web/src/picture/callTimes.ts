import { listNames, type ListName, type Entry } from "../api/types";
import { dayStart } from "../text/times";

export const days = 28;

export interface Day {
    date: Date;
    /** How many calls began in each hour, in the reader's time zone. */
    hours: number[];
    total: number;
}

/** The last four weeks, today last. Callbacks are no calls. */
export function callsByDay(entriesOf: (list: ListName) => readonly Entry[], now = new Date()): Day[] {
    const found: Day[] = Array.from({ length: days }, (_, at) => ({
        date: dayStart(now, at - days + 1),
        hours: new Array<number>(24).fill(0),
        total: 0,
    }));
    const places = new Map(found.map((day) => [day.date.getTime(), day]));
    for (const list of listNames.filter((name) => name !== "callbacks")) {
        for (const call of entriesOf(list).flatMap((entry) => entry.occurrences ?? [])) {
            const time = new Date(call.time);
            const day = places.get(dayStart(time).getTime());
            if (day) {
                const hour = time.getHours();
                day.hours[hour] = (day.hours[hour] ?? 0) + 1;
                day.total += 1;
            }
        }
    }
    return found;
}
