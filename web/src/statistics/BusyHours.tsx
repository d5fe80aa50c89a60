import { Fragment } from "preact";
import type { CallList, Quarter } from "../api/types";
import { t } from "../text/language";
import { dayStart, hourName, numberText, weekdayName } from "../text/times";
import { Card } from "./Card";
import { busyHours, level, shades } from "./days";

/** A Monday, to name the weekdays by. */
const monday = new Date(2024, 0, 1);

/** The legend of the shades; hidden from screen readers, which read the table. */
function Shades({ most }: { most: number }) {
    return (
        <p class="shades" aria-hidden="true">
            {t().statistics.perHour}{" "}
            {shades(most).map((each) => (
                <span key={each.level}>
                    <span class={`shade level-${each.level}`} /> {each.from === each.to ? each.from : `${each.from}–${each.to}`}
                </span>
            ))}
        </p>
    );
}

/** A row for each weekday, a column for each hour, darker for more calls. */
export function BusyHours({ quarters, list }: { quarters: readonly Quarter[]; list: CallList | undefined }) {
    const texts = t().statistics;
    const rows = busyHours(quarters, list).map((hours, at) => ({ name: weekdayName(dayStart(monday, at)), brief: weekdayName(dayStart(monday, at), true), hours }));
    const most = Math.max(1, ...rows.flatMap(({ hours }) => hours));
    const table = (
        <table class="figures">
            <caption class="visually-hidden">{texts.busy}</caption>
            <thead>
                <tr>
                    <th scope="col">{texts.day}</th>
                    <th scope="col">{texts.list}</th>
                    <th scope="col">{texts.byHour}</th>
                </tr>
            </thead>
            <tbody>
                {rows.map(({ name, hours }) => (
                    <tr key={name}>
                        <th scope="row">{name}</th>
                        <td>{numberText(hours.reduce((one, other) => one + other))}</td>
                        <td class="wide-cell">
                            {hours
                                .map((count, hour) => (count > 0 ? `${hourName(hour)}: ${numberText(count)}` : ""))
                                .filter(Boolean)
                                .join(", ")}
                        </td>
                    </tr>
                ))}
            </tbody>
        </table>
    );
    return (
        <Card name="busy" title={texts.busy} text={texts.busyText} table={table}>
            <div class="heatmap" role="img" aria-label={texts.busy}>
                <span />
                {[0, 6, 12, 18].map((hour) => (
                    <span key={hour} class="heatmap-hour">
                        {hourName(hour)}
                    </span>
                ))}
                {rows.map(({ brief, name, hours }) => (
                    <Fragment key={name}>
                        <span class="heatmap-day">{brief}</span>
                        {hours.map((count, hour) => (
                            <span key={hour} class={`shade level-${level(count, most)}`} title={`${name}, ${hourName(hour)}: ${count}`} />
                        ))}
                    </Fragment>
                ))}
            </div>
            <Shades most={most} />
        </Card>
    );
}
