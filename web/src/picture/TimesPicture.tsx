import { Fragment } from "preact";
import { level, shades, type Day } from "./callTimes";

const dayName = new Intl.DateTimeFormat(undefined, { weekday: "short", day: "numeric", month: "numeric" });
const hourFormat = new Intl.DateTimeFormat(undefined, { hour: "numeric" });

function hourName(hour: number): string {
    return hourFormat.format(new Date(2024, 0, 1, hour));
}

/** What the shades of the picture stand for; its table needs none. */
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

/** A row a day, a column an hour, darker for more calls. The table below it says the same to those who do not see it. */
export function TimesPicture({ days }: { days: readonly Day[] }) {
    const most = Math.max(1, ...days.flatMap((day) => day.hours));
    return (
        <div class="picture-box">
            <div class="picture" role="img" aria-label="Calls by day and hour in the last four weeks; the table below has the numbers">
                <span />
                {[0, 6, 12, 18].map((hour) => (
                    <span key={hour} class="picture-hour">
                        {hourName(hour)}
                    </span>
                ))}
                {days.map((day, row) => (
                    <Fragment key={day.date.getTime()}>
                        <span class="picture-day">{(days.length - 1 - row) % 7 === 0 && dayName.format(day.date)}</span>
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
