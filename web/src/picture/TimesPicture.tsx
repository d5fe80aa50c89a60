import type { Day } from "./callTimes";

const cell = 12;
const left = 62;
const top = 16;
const dayName = new Intl.DateTimeFormat(undefined, { weekday: "short", day: "numeric", month: "numeric" });
const hourName = new Intl.DateTimeFormat(undefined, { hour: "numeric" });

/** 0 to 4, the most calls of any hour being 4. */
function level(count: number, most: number): number {
    return count === 0 ? 0 : Math.max(1, Math.ceil((count / most) * 4));
}

/** A row a day, a column an hour, darker for more calls. The table below it says the same to those who do not see it. */
export function TimesPicture({ days }: { days: readonly Day[] }) {
    const most = Math.max(1, ...days.flatMap((day) => day.hours));
    return (
        <svg
            class="picture"
            viewBox={`0 0 ${left + 24 * cell + 2} ${top + days.length * cell + 2}`}
            role="img"
            aria-label="Calls by day and hour in the last four weeks; the table below has the numbers"
        >
            {[0, 6, 12, 18].map((hour) => (
                <text key={hour} x={left + hour * cell} y={top - 5}>
                    {hourName.format(new Date(2024, 0, 1, hour))}
                </text>
            ))}
            {days.map((day, row) => (
                <g key={day.date.getTime()} transform={`translate(${left} ${top + row * cell})`}>
                    {(days.length - 1 - row) % 7 === 0 && (
                        <text x={-5} y={cell - 3} text-anchor="end">
                            {dayName.format(day.date)}
                        </text>
                    )}
                    {day.hours.map((count, hour) => (
                        <rect key={hour} x={hour * cell} width={cell - 1.5} height={cell - 1.5} rx="2" class={`level-${level(count, most)}`}>
                            <title>{`${dayName.format(day.date)}, ${hourName.format(new Date(2024, 0, 1, hour))}: ${count}`}</title>
                        </rect>
                    ))}
                </g>
            ))}
        </svg>
    );
}
