import { useMemo } from "preact/hooks";
import { t } from "../text/language";
import { briefDay, durationText, numberText } from "../text/times";
import { Card } from "./Card";
import type { Day } from "./days";
import { Plot } from "./Plot";

const secondsOfDay = 24 * 60 * 60;

interface TableProps {
    caption: string;
    columns: readonly string[];
    rows: readonly { day: Day; cells: readonly string[] }[];
}

function DayTable({ caption, columns, rows }: TableProps) {
    return (
        <table class="figures">
            <caption class="visually-hidden">{caption}</caption>
            <thead>
                <tr>
                    {[t().statistics.day, ...columns].map((each) => (
                        <th key={each} scope="col">
                            {each}
                        </th>
                    ))}
                </tr>
            </thead>
            <tbody>
                {rows.map(({ day, cells }) => (
                    <tr key={day.date.getTime()}>
                        <th scope="row">{briefDay(day.date)}</th>
                        {cells.map((cell, at) => (
                            <td key={at}>{cell}</td>
                        ))}
                    </tr>
                ))}
            </tbody>
        </table>
    );
}

/** Calls a day, talk time, and the time until missed callers were called back, each with its table of the days that have calls. */
export function DayPictures({ days, callBackTime }: { days: readonly Day[]; callBackTime: number | null }) {
    const texts = t().statistics;
    const dates = useMemo(() => days.map(({ date }) => date), [days]);
    const parts = ["taken", "dialled", "missed", "elsewhere", "forwarded"] as const;
    const names = { ...texts, forwarded: t().lists.forwarded };
    const calls = useMemo(
        () =>
            parts
                .filter((part) => days.some((day) => day[part] > 0))
                .map((part) => ({ label: names[part], colour: `chart-${part}`, values: days.map((day) => day[part]) })),
        [days, texts],
    );
    const talk = useMemo(() => [{ label: texts.minutes, colour: "chart-taken", values: days.map(({ talkTime }) => Math.round(talkTime / 60)) }], [days, texts]);
    const back = useMemo(() => {
        const inDays = days.some(({ callBackTime }) => (callBackTime ?? 0) > 2 * secondsOfDay);
        const unit = inDays ? secondsOfDay : 3600;
        const values = days.map(({ callBackTime }) => (callBackTime === null ? null : Math.round((10 * callBackTime) / unit) / 10));
        return [{ label: inDays ? texts.days : texts.hours, colour: "chart-dialled", values }];
    }, [days, texts]);
    const newest = [...days].filter((day) => day.calls > 0).reverse();
    return (
        <>
            <Card
                name="per-day"
                title={texts.perDay}
                text={texts.perDayText}
                table={
                    <DayTable
                        caption={texts.perDay}
                        columns={[texts.list, ...parts.map((part) => names[part])]}
                        rows={newest.map((day) => ({ day, cells: [numberText(day.calls), ...parts.map((part) => numberText(day[part]))] }))}
                    />
                }
            >
                <Plot label={texts.perDay} days={dates} series={calls} />
            </Card>
            <Card
                name="talk"
                title={texts.talk}
                text={texts.talkText}
                table={
                    <DayTable caption={texts.talk} columns={[texts.talk]} rows={newest.map((day) => ({ day, cells: [durationText(day.talkTime)] }))} />
                }
            >
                <Plot label={texts.talk} days={dates} series={talk} />
            </Card>
            {newest.some(({ callBackTime }) => callBackTime !== null) && (
                <Card
                    name="call-back"
                    title={texts.totals.callBack}
                    text={callBackTime === null ? "" : texts.callBackText(durationText(callBackTime))}
                    table={
                        <DayTable
                            caption={texts.totals.callBack}
                            columns={[texts.totals.callBack]}
                            rows={newest.map((day) => ({ day, cells: [day.callBackTime === null ? texts.never : durationText(day.callBackTime)] }))}
                        />
                    }
                >
                    <Plot label={texts.totals.callBack} days={dates} series={back} />
                </Card>
            )}
        </>
    );
}
