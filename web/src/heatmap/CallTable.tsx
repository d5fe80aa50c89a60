import { dateLanguage } from "../text/times";
import type { Day } from "./callTimes";

const dayName = new Intl.DateTimeFormat(undefined, { weekday: "long", day: "numeric", month: "long" });
const hourName = new Intl.DateTimeFormat(undefined, { hour: "numeric" });

function hoursText(day: Day): string {
    return day.hours
        .map((count, hour) => (count > 0 ? `${hourName.format(new Date(2024, 0, 1, hour))}: ${count}` : ""))
        .filter(Boolean)
        .join(", ");
}

export function CallTable({ days }: { days: readonly Day[] }) {
    const busy = days.filter((day) => day.total > 0).reverse();
    return (
        <table class="times">
            <caption>Days with calls, the newest first</caption>
            <thead>
                <tr>
                    <th scope="col">Day</th>
                    <th scope="col">Calls</th>
                    <th scope="col">By hour</th>
                </tr>
            </thead>
            <tbody>
                {busy.map((day) => (
                    <tr key={day.date.getTime()}>
                        <th scope="row" lang={dateLanguage}>
                            {dayName.format(day.date)}
                        </th>
                        <td>{day.total}</td>
                        <td lang={dateLanguage}>{hoursText(day)}</td>
                    </tr>
                ))}
            </tbody>
        </table>
    );
}
