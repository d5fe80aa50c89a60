/** Dates and times in the user's language and time zone. */

const clock = new Intl.DateTimeFormat(undefined, { timeStyle: "short" });
const exactClock = new Intl.DateTimeFormat(undefined, { timeStyle: "medium" });
const weekday = new Intl.DateTimeFormat(undefined, { weekday: "short", hour: "numeric", minute: "2-digit" });
const shortDay = new Intl.DateTimeFormat(undefined, { dateStyle: "medium" });
const longDay = new Intl.DateTimeFormat(undefined, { dateStyle: "full" });
const full = new Intl.DateTimeFormat(undefined, { dateStyle: "full", timeStyle: "medium" });

/** The language of these dates; it may differ from the page's. */
export const dateLanguage = full.resolvedOptions().locale;

export function dayStart(time: Date, daysLater = 0): Date {
    return new Date(time.getFullYear(), time.getMonth(), time.getDate() + daysLater);
}

/** The shortest form: the time today, the weekday within a week, else the date. */
export function briefTime(time: string, now = new Date()): string {
    const date = new Date(time);
    if (Number.isNaN(date.getTime())) {
        return time;
    }
    if (date >= dayStart(now)) {
        return clock.format(date);
    }
    return date >= dayStart(now, -6) ? weekday.format(date) : shortDay.format(date);
}

export function clockTime(time: string): string {
    return clock.format(new Date(time));
}

/** With seconds. */
export function exactClockTime(time: string): string {
    return exactClock.format(new Date(time));
}

/** "Today", "Yesterday", else the date. */
export function dayTitle(day: Date, now = new Date()): string {
    const [today, yesterday] = [dayStart(now), dayStart(now, -1)].map((each) => each.getTime());
    return day.getTime() === today ? "Today" : day.getTime() === yesterday ? "Yesterday" : longDay.format(day);
}

export function fullTime(time: string): string {
    const date = new Date(time);
    return Number.isNaN(date.getTime()) ? time : full.format(date);
}

/** 3665 as "1 h 1 min 5 s"; "about" precedes a duration whose end is approximate. */
export function durationText(duration: number, isApproximate: boolean): string {
    const parts: [number, string][] = [
        [Math.floor(duration / 3600), "h"],
        [Math.floor(duration / 60) % 60, "min"],
        [duration % 60, "s"],
    ];
    const shown = parts.slice(parts.findIndex(([count]) => count > 0)); // the seconds if all are 0
    return `${isApproximate ? "about " : ""}${shown.map(([count, unit]) => `${count} ${unit}`).join(" ")}`;
}
