import { useState } from "preact/hooks";
import type { Call } from "../api/types";
import { FactList } from "../frame/FactList";
import { listLabel } from "../state/route";
import { clockTime, dateLanguage } from "../text/times";
import { callFacts, callSummary, callTitle } from "./callText";

interface Props {
    call: Call;
    /** True for the one row at which Tab stops. */
    isActive: boolean;
    onFocus: () => void;
    onDelete: () => void;
}

function Details({ call, onDelete }: Pick<Props, "call" | "onDelete">) {
    return (
        <div class="call-details">
            <FactList facts={callFacts(call)} />
            <p class="call-actions">
                {call.uniqueId && <a href={`#/${call.list}/${call.uniqueId}`}>Entry in {listLabel(call.list).toLowerCase()}</a>}
                {call.number && <a href={`#/calls?number=${encodeURIComponent(call.number)}`}>All calls of this number</a>}
                <button type="button" onClick={onDelete}>
                    Delete this call
                </button>
            </p>
        </div>
    );
}

export function CallRow({ call, isActive, onFocus, onDelete }: Props) {
    const [isOpen, setOpen] = useState(false);
    const isNew = call.list === "missed" && !call.viewed;
    return (
        <li data-test="call">
            <details onToggle={(event) => setOpen(event.currentTarget.open)}>
                <summary
                    class={isNew ? "call-row row-new" : "call-row"}
                    tabIndex={isActive ? 0 : -1}
                    data-focus-target={isActive || undefined}
                    onFocus={onFocus}
                >
                    <span class="row-name">
                        {isNew && <span class="row-badge">new</span>}
                        <bdi>{callTitle(call)}</bdi>
                    </span>
                    <time class="row-time" lang={dateLanguage} dateTime={call.start}>
                        {clockTime(call.start)}
                    </time>
                    <span class="row-facts">{callSummary(call)}</span>
                </summary>
                {isOpen && <Details call={call} onDelete={onDelete} />}
            </details>
        </li>
    );
}
