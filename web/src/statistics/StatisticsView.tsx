import { useMemo } from "preact/hooks";
import { callLists } from "../api/types";
import { parameter, setParameters } from "../state/route";
import { t } from "../text/language";
import { durationText, numberText, percentText } from "../text/times";
import { BusyHours } from "./BusyHours";
import { DayPictures } from "./DayPictures";
import { daysOf } from "./days";
import { TopParties } from "./TopParties";
import { useStatistics, type Figures } from "./useStatistics";

const ranges = { "7d": 7, "28d": 28, "90d": 90, "365d": 365 } as const;
type Range = keyof typeof ranges;

function isRange(text: string | undefined): text is Range {
    return text !== undefined && text in ranges;
}

function Totals({ totals }: { totals: Figures["totals"] }) {
    const { totals: names, never } = t().statistics;
    const taken = totals.answered; // calls answered here
    const came = taken + totals.missed;
    const tiles: [string, string][] = [
        [names.calls, numberText(totals.calls)],
        [names.missed, numberText(totals.missed)],
        [names.share, came > 0 ? percentText(taken / came) : never],
        [names.talkTime, totals.talkTime > 0 ? durationText(totals.talkTime) : never],
        [names.longest, totals.longest > 0 ? durationText(totals.longest) : never],
        [names.callBack, totals.callBackTime === null ? never : durationText(totals.callBackTime)],
    ];
    return (
        <dl class="tiles" data-test="totals">
            {tiles.map(([name, value]) => (
                <div key={name}>
                    <dt>{name}</dt>
                    <dd>{value}</dd>
                </div>
            ))}
        </dl>
    );
}

/** Pictures of the calls of a period; the address keeps the period and the list. */
export function StatisticsView() {
    const texts = t().statistics;
    const chosen = parameter("range");
    const range: Range = isRange(chosen) ? chosen : "28d";
    const list = callLists.find((each) => each === parameter("list"));
    const figures = useStatistics(ranges[range], list);
    const days = useMemo(() => (figures ? daysOf(figures) : []), [figures]);
    return (
        <div class="view">
            <div class="view-column wide-column">
                <div class="view-head">
                    <h2 class="view-title">{t().views.statistics}</h2>
                    <label>
                        <span class="visually-hidden">{texts.list}</span>
                        <select value={list ?? ""} data-test="statistics-list" onChange={(event) => setParameters({ list: event.currentTarget.value })}>
                            <option value="">{t().lists.all}</option>
                            {callLists.map((each) => (
                                <option key={each} value={each}>
                                    {t().lists[each]}
                                </option>
                            ))}
                        </select>
                    </label>
                    <div class="segments" role="group" aria-label={texts.range}>
                        {(Object.keys(ranges) as Range[]).map((each) => (
                            <button key={each} type="button" aria-pressed={each === range} data-test={`range-${each}`} onClick={() => setParameters({ range: each })}>
                                {texts.ranges[each]}
                            </button>
                        ))}
                    </div>
                </div>
                {figures && figures.totals.calls === 0 && (
                    <div class="empty" data-test="empty">
                        <h2>{texts.none}</h2>
                        <p>{texts.noneText}</p>
                    </div>
                )}
                {figures && figures.totals.calls > 0 && (
                    <>
                        <Totals totals={figures.totals} />
                        <div class="cards">
                            <DayPictures days={days} callBackTime={figures.totals.callBackTime} />
                            <BusyHours quarters={figures.quarters} list={list} />
                            <TopParties parties={figures.parties} />
                        </div>
                    </>
                )}
            </div>
        </div>
    );
}
