import { computed } from "@preact/signals";
import { locale, t } from "./language";

/** Dates and times in the language of the page and the browser's time zone. Components that use them follow the language. */
const formats = computed(() => {
    const format = (options: Intl.DateTimeFormatOptions) => new Intl.DateTimeFormat(locale.value, options);
    return {
        clock: format({ timeStyle: "short" }),
        weekday: format({ weekday: "long", day: "numeric", month: "long" }),
        dayOfYear: format({ weekday: "long", day: "numeric", month: "long", year: "numeric" }),
        seconds: format({ timeStyle: "medium" }),
        brief: format({ day: "numeric", month: "short" }),
        short: format({ day: "numeric", month: "short", year: "numeric" }),
        full: format({ dateStyle: "full", timeStyle: "medium" }),
        hour: format({ hour: "numeric" }),
        longWeekday: format({ weekday: "long" }),
        shortWeekday: format({ weekday: "short" }),
        number: new Intl.NumberFormat(locale.value),
        percent: new Intl.NumberFormat(locale.value, { style: "percent", maximumFractionDigits: 0 }),
    };
});

export function dayStart(time: Date, daysLater = 0): Date {
    return new Date(time.getFullYear(), time.getMonth(), time.getDate() + daysLater);
}

/** The day as the server's filters and date fields have it: 2026-11-21. */
export function isoDay(day: Date): string {
    const two = (number: number) => String(number).padStart(2, "0");
    return `${day.getFullYear()}-${two(day.getMonth() + 1)}-${two(day.getDate())}`;
}

/** The begin of the day "2026-11-21", or undefined. */
export function dayOf(text: string | undefined): Date | undefined {
    const [, year, month, day] = /^(\d{4})-(\d\d)-(\d\d)$/.exec(text ?? "") ?? [];
    return year && month && day ? new Date(Number(year), Number(month) - 1, Number(day)) : undefined;
}

export function clockTime(time: string, withSeconds = false): string {
    return formats.value[withSeconds ? "seconds" : "clock"].format(new Date(time));
}

/** "Today", "Yesterday", else the date; with the year if it is not this one. */
export function dayTitle(day: Date, now = new Date()): string {
    const name = day >= dayStart(now) ? t().days.today : day >= dayStart(now, -1) ? t().days.yesterday : undefined;
    const sameYear = day.getFullYear() === now.getFullYear();
    return name ?? formats.value[sameYear ? "weekday" : "dayOfYear"].format(day);
}

/** The day and the time in a few words: "Today 14:05", "21 Nov 2026, 14:05". */
export function dayAndTime(time: string, now = new Date()): string {
    const date = new Date(time);
    const brief = date >= dayStart(now) ? t().days.today : date >= dayStart(now, -1) ? t().days.yesterday : formats.value.short.format(date);
    return `${brief} ${clockTime(time)}`;
}

export function shortDay(time: string | Date): string {
    return formats.value.short.format(new Date(time));
}

/** The day in a few words, with the year if it is not this one. */
export function briefDay(time: string | Date, now = new Date()): string {
    const date = new Date(time);
    return formats.value[date.getFullYear() === now.getFullYear() ? "brief" : "short"].format(date);
}

export function fullTime(time: string): string {
    return formats.value.full.format(new Date(time));
}

export function hourName(hour: number): string {
    return formats.value.hour.format(new Date(2024, 0, 1, hour));
}

export function weekdayName(day: Date, isBrief = false): string {
    return formats.value[isBrief ? "shortWeekday" : "longWeekday"].format(day);
}

export function numberText(value: number): string {
    return formats.value.number.format(value);
}

export function percentText(share: number): string {
    return formats.value.percent.format(share);
}

/** 3665 as "1 h 1 min"; seconds only below ten minutes; from 48 hours on "3 days 21 h". */
export function durationText(seconds: number, isApproximate = false): string {
    const { days, h, min, s, about } = t().duration;
    if (seconds >= 172_800) {
        const hours = Math.round(seconds / 3600);
        const rest = hours % 24;
        return `${isApproximate ? `${about} ` : ""}${days(Math.floor(hours / 24))}${rest > 0 ? ` ${rest}\u00a0${h}` : ""}`;
    }
    const whole = seconds >= 600 ? Math.round(seconds / 60) * 60 : Math.round(seconds);
    const parts: [number, string][] = [
        [Math.floor(whole / 3600), h],
        [Math.floor(whole / 60) % 60, min],
        [seconds >= 600 ? 0 : whole % 60, s],
    ];
    const shown = parts.filter(([count]) => count > 0).map(([count, unit]) => `${numberText(count)}\u00a0${unit}`);
    return `${isApproximate ? `${about} ` : ""}${shown.join(" ") || `0\u00a0${s}`}`;
}

/** 189 as "3 min": for a glance. */
export function briefDuration(seconds: number, isApproximate = false): string {
    return durationText(seconds < 60 ? seconds : Math.round(seconds / 60) * 60, isApproximate);
}

/** 125 as "2:05", 3665 as "1:01:05". */
export function clockDuration(seconds: number): string {
    const two = (number: number) => String(number).padStart(2, "0");
    const [hours, minutes, rest] = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, Math.floor(seconds) % 60];
    return hours > 0 ? `${hours}:${two(minutes)}:${two(rest)}` : `${minutes}:${two(rest)}`;
}
