import { CallButton } from "../dial/CallButton";
import { Avatar } from "../frame/Avatar";
import { Icon } from "../frame/Icon";
import { calledBackAt } from "../state/dealtWith";
import { unseen } from "../state/unseen";
import { t } from "../text/language";
import { nameOf, numberOf, titleOf } from "../text/people";
import { briefDuration, clockTime, durationText, fullTime } from "../text/times";
import { outcomeText } from "./outcome";
import type { Group } from "./rows";
import { isSelected, isSelecting, select, setExpanded } from "./shown";

interface Props {
    group: Group;
    /** Tab stops at the controls of this row. */
    isActive: boolean;
    isOpen: boolean;
    onOpen: () => void;
}

function Facts({ group }: { group: Group }) {
    const [call] = group.calls;
    const dealt = calledBackAt(call);
    return (
        <span class="row-facts">
            <Icon name={group.outcome === "dialled" ? "outgoing" : group.outcome === "received" ? "incoming" : group.outcome} class={`outcome-${dealt ? "dealt" : group.outcome}`} />
            <span class="row-words">
                <span class="row-lead">
                    <span class="row-outcome">
                        {dealt ? (
                            <>
                                <span class="roomy">{outcomeText(call)} · </span>
                                <span data-test="dealt-with">{t().outcomes.dealtWith}</span>
                            </>
                        ) : (
                            outcomeText(call)
                        )}
                    </span>
                    {nameOf(call) && numberOf(call) && <span class="row-number">{` · ${numberOf(call)}`}</span>}
                </span>
                {call.place && <span class="row-place">{` · ${call.place}`}</span>}
            </span>
        </span>
    );
}

function Expander({ group, stop }: { group: Group; stop: number }) {
    const count = group.calls.length;
    const text = group.isExpanded ? t().outcomes.hideEach(count) : t().outcomes.showEach(count);
    return (
        <button
            type="button"
            class="expander"
            data-control="expand"
            data-test="expand"
            aria-expanded={group.isExpanded}
            aria-label={text}
            title={text}
            tabIndex={stop}
            onClick={() => setExpanded(group, !group.isExpanded)}
        >
            {count}
            <Icon name={group.isExpanded ? "up" : "down"} />
        </button>
    );
}

/** A call, or several of one party that follow each other. */
export function CallRow({ group, isActive, isOpen, onOpen }: Props) {
    const [call] = group.calls;
    const who = titleOf(call);
    const stop = isActive ? 0 : -1;
    const isUnseen = group.calls.some(({ id }) => unseen.value.has(id));
    const isDealt = calledBackAt(call) !== undefined;
    const talk = group.calls.reduce((sum, each) => sum + each.duration, 0);
    const chosen = isSelecting.value && isSelected(group);
    return (
        <div class={`row${isUnseen ? " row-new" : ""}${isOpen ? " row-open" : ""}${chosen ? " row-selected" : ""} row-${isDealt ? "dealt" : group.outcome}`} data-test="row">
            {isSelecting.value ? (
                <label class="row-box">
                    <input
                        type="checkbox"
                        data-control="select"
                        tabIndex={stop}
                        aria-label={t().selection.row(who)}
                        checked={chosen}
                        onChange={(event) => select(group.calls, event.currentTarget.checked)}
                    />
                </label>
            ) : (
                <Avatar name={nameOf(call)} />
            )}
            <button type="button" class="row-main" data-control="open" data-focus-target={isActive || undefined} tabIndex={stop} aria-current={isOpen || undefined} onClick={onOpen}>
                <span class="row-name">
                    <bdi>{who}</bdi>
                    {isUnseen && <span class="visually-hidden">, {t().outcomes.isNew}</span>}
                    {group.calls.length > 1 && <span class="visually-hidden">, {t().outcomes.times(group.calls.length)}</span>}
                </span>
                <Facts group={group} />
                <span class="visually-hidden">
                    , {[clockTime(call.start), talk > 0 && durationText(talk, call.endApproximate)].filter(Boolean).join(", ")}
                </span>
            </button>
            <span class="row-side">
                <time aria-hidden="true" dateTime={call.start} title={fullTime(call.start)}>
                    {clockTime(call.start)}
                </time>
                {group.calls.length > 1 ? (
                    <Expander group={group} stop={stop} />
                ) : (
                    <span aria-hidden="true">{talk > 0 && briefDuration(talk, call.endApproximate)}</span>
                )}
            </span>
            {call.number ? <CallButton number={call.number} who={who} stop={stop} /> : <span class="call-place" />}
        </div>
    );
}
