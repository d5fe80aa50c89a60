import type { Call } from "../api/types";
import { becameOf, outcomeOf } from "../calls/outcome";
import { Icon } from "../frame/Icon";
import { deleteLater } from "../state/deletions";
import { calledBackAt } from "../state/dealtWith";
import { mayWrite } from "../state/rights";
import { unseen } from "../state/unseen";
import { t } from "../text/language";
import { clockTime, dayStart, dayTitle, fullTime } from "../text/times";

function Item({ call }: { call: Call }) {
    const outcome = outcomeOf(call);
    const icon = outcome === "dialled" ? "outgoing" : outcome === "received" ? "incoming" : outcome;
    const became = becameOf(call);
    const isUnseen = unseen.value.has(call.id);
    return (
        <li class={isUnseen ? "history-call history-new" : "history-call"} data-test="history-call">
            <Icon name={icon} class={`outcome-${calledBackAt(call) ? "dealt" : outcome}`} />
            <span class="history-text">
                <span class="history-outcome">
                    {t().outcomes[outcome]} <span class="history-time">· </span>
                    <time class="history-time" dateTime={call.start} title={fullTime(call.start)}>
                        {clockTime(call.start)}
                    </time>
                    {isUnseen && <span class="tag">{t().outcomes.isNew}</span>}
                </span>
                {became.length > 0 && (
                    <span class="history-became" data-test="became">
                        {became.join(" · ")}
                    </span>
                )}
            </span>
            {mayWrite.value && (
                <button
                    type="button"
                    class="icon-button quiet-button"
                    data-test="delete-call"
                    aria-label={`${t().person.deleteCall}: ${t().outcomes[outcome]}, ${fullTime(call.start)}`}
                    title={t().person.deleteCall}
                    onClick={() => deleteLater("calls", [call.id])}
                >
                    <Icon name="trash" />
                </button>
            )}
        </li>
    );
}

interface Props {
    title: string;
    calls: readonly Call[];
    /** Reads older calls; undefined if there are none. */
    onMore?: (() => void) | undefined;
}

/** Calls under the headings of their days, and a button for the older ones. */
export function PersonCalls({ title, calls, onMore }: Props) {
    if (calls.length === 0) {
        return null;
    }
    const days: { day: Date; calls: Call[] }[] = [];
    for (const call of calls) {
        const day = dayStart(new Date(call.start));
        const last = days[days.length - 1];
        if (last?.day.getTime() === day.getTime()) {
            last.calls.push(call);
        } else {
            days.push({ day, calls: [call] });
        }
    }
    return (
        <div class="history" data-test="history">
            <h3 class="history-title" tabIndex={-1} data-focus-target>
                {title}
            </h3>
            {days.map((each) => (
                <section key={each.day.getTime()}>
                    <h4 class="history-day">{dayTitle(each.day)}</h4>
                    <ul>
                        {each.calls.map((call) => (
                            <Item key={call.id} call={call} />
                        ))}
                    </ul>
                </section>
            ))}
            {onMore && (
                <button type="button" class="more-button" data-test="more-history" onClick={onMore}>
                    {t().person.more}
                </button>
            )}
        </div>
    );
}
