import { useState } from "preact/hooks";
import type { Call } from "../api/types";
import { dateLanguage, dayStart, dayTitle } from "../text/times";
import { CallRow } from "./CallRow";

interface Day {
    date: Date;
    calls: Call[];
}

function byDay(calls: readonly Call[]): Day[] {
    const days: Day[] = [];
    for (const call of calls) {
        const date = dayStart(new Date(call.start));
        const last = days[days.length - 1];
        if (last?.date.getTime() === date.getTime()) {
            last.calls.push(call);
        } else {
            days.push({ date, calls: [call] });
        }
    }
    return days;
}

const steps: Record<string, number> = { ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8, Home: -Infinity, End: Infinity };

/** Moves from row to row; the element is the list of all days. */
function move(event: KeyboardEvent, list: HTMLElement): void {
    const rows = [...list.querySelectorAll("summary")];
    const at = rows.indexOf(event.target as HTMLElement);
    const step = steps[event.key];
    if (at >= 0 && step !== undefined && !event.ctrlKey && !event.altKey && !event.metaKey) {
        event.preventDefault();
        rows[Math.max(0, Math.min(rows.length - 1, at + step))]?.focus();
    }
}

interface Props {
    calls: readonly Call[];
    onDelete: (call: Call) => void;
}

/** The calls, with a heading for each day. Tab stops at one row, the arrow keys move to the others. */
export function CallDays({ calls, onDelete }: Props) {
    const [active, setActive] = useState({ id: 0, index: 0 });
    const isShown = calls.some(({ id }) => id === active.id);
    const activeId = isShown ? active.id : calls[Math.min(active.index, calls.length - 1)]?.id;
    return (
        <div
            data-test="calls-by-day"
            onKeyDown={(event) => {
                const call = calls.find(({ id }) => id === activeId);
                if (event.key === "Delete" && call && (event.target as HTMLElement).matches("summary")) {
                    onDelete(call);
                }
                move(event, event.currentTarget);
            }}
        >
            {byDay(calls).map((day) => (
                <section key={day.date.getTime()} class="call-day">
                    <h3 lang={dateLanguage}>{dayTitle(day.date)}</h3>
                    <ul>
                        {day.calls.map((call) => (
                            <CallRow
                                key={call.id}
                                call={call}
                                isActive={call.id === activeId}
                                onFocus={() => setActive({ id: call.id, index: calls.indexOf(call) })}
                                onDelete={() => onDelete(call)}
                            />
                        ))}
                    </ul>
                </section>
            ))}
        </div>
    );
}
