/** Dates and times in the user's language and time zone. */

const clock = new Intl.DateTimeFormat(undefined, { timeStyle: "short" });
const weekday = new Intl.DateTimeFormat(undefined, { weekday: "short", hour: "numeric", minute: "2-digit" });
const shortDay = new Intl.DateTimeFormat(undefined, { dateStyle: "medium" });
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

export function fullTime(time: string): string {
    const date = new Date(time);
    return Number.isNaN(date.getTime()) ? time : full.format(date);
}

/** "01:05" (minutes and seconds) as "1 min 5 s". */
export function durationText(duration: string): string {
    const [minutes = 0, seconds = 0] = duration.split(":").map(Number);
    if (Number.isNaN(minutes) || Number.isNaN(seconds)) {
        return duration;
    }
    return minutes > 0 ? `${minutes} min ${seconds} s` : `${seconds} s`;
}
