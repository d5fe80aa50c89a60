import { Fragment } from "preact";
import { level, shades, type Day } from "./callTimes";

const dayName = new Intl.DateTimeFormat(undefined, { weekday: "short", day: "numeric", month: "numeric" });
const hourFormat = new Intl.DateTimeFormat(undefined, { hour: "numeric" });

function hourName(hour: number): string {
    return hourFormat.format(new Date(2024, 0, 1, hour));
}

/** The legend of the shades; hidden from screen readers, which read the table. */
function Shades({ most }: { most: number }) {
    return (
        <p class="shades" aria-hidden="true">
            Calls in an hour:{" "}
            {shades(most).map(({ level, from, to }) => (
                <span key={level}>
                    <span class={`shade level-${level}`} /> {from === to ? from : `${from}–${to}`}
                </span>
            ))}
        </p>
    );
}

/** A row for each day, a column for each hour, darker for more calls. The table below has the same data for screen readers. */
export function CallHeatmap({ days }: { days: readonly Day[] }) {
    const most = Math.max(1, ...days.flatMap((day) => day.hours));
    return (
        <div class="heatmap-box">
            <div class="heatmap" role="img" aria-label="Calls by day and hour in the last four weeks; the table below has the numbers">
                <span />
                {[0, 6, 12, 18].map((hour) => (
                    <span key={hour} class="heatmap-hour">
                        {hourName(hour)}
                    </span>
                ))}
                {days.map((day, row) => (
                    <Fragment key={day.date.getTime()}>
                        <span class="heatmap-day">{(days.length - 1 - row) % 7 === 0 && dayName.format(day.date)}</span>
                        {day.hours.map((count, hour) => (
                            <span
                                key={hour}
                                class={`shade level-${level(count, most)}`}
                                title={`${dayName.format(day.date)}, ${hourName(hour)}: ${count}`}
                            />
                        ))}
                    </Fragment>
                ))}
            </div>
            <Shades most={most} />
        </div>
    );
}
