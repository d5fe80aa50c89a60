import type { Entry, ListName } from "../api/types";
import { plural, titleOf } from "../text/names";
import { briefTime, dateLanguage, durationText, fullTime } from "../text/times";
import { callbackText } from "./callbacks";

interface Props {
    list: ListName;
    entry: Entry;
    index: number;
    count: number;
    top: number;
    isActive: boolean;
    isSelected: boolean;
    isOpen: boolean;
    onFocus: () => void;
    onSelect: (on: boolean) => void;
    onOpen: () => void;
    onDelete: () => void;
}

/** The text below the name: number, number of calls, duration of the newest. */
function facts(list: ListName, entry: Entry): string {
    const { calls = 1 } = entry;
    const newest = entry.occurrences?.[0];
    return [
        entry.displayName ? entry.number : entry.number ? "" : "number withheld",
        list === "callbacks" ? callbackText(entry) : "",
        calls > 1 ? plural(calls, "call", "calls") : "",
        newest?.durationSeconds ? durationText(newest.durationSeconds, newest.endApproximate) : "",
        newest?.completedElsewhere ? "answered elsewhere" : "",
        newest?.forwardedToNumber ? `to ${newest.forwardedToNumber}` : "",
    ]
        .filter(Boolean)
        .join(" · ");
}

export function EntryRow({ list, entry, index, count, top, isActive, isSelected, isOpen, onFocus, onSelect, onOpen, onDelete }: Props) {
    const isNew = entry.viewed === false;
    const title = titleOf(entry);
    const stop = isActive ? 0 : -1;
    return (
        <li
            class={`row${isNew ? " row-new" : ""}${isOpen ? " row-open" : ""}`}
            style={{ transform: `translateY(${top}px)` }}
            aria-setsize={count}
            aria-posinset={index + 1}
            data-index={index}
            data-test="row"
            onFocusCapture={onFocus}
        >
            <input
                type="checkbox"
                data-control="select"
                tabIndex={stop}
                aria-label={`Select ${title}`}
                checked={isSelected}
                onChange={(event) => onSelect(event.currentTarget.checked)}
            />
            <button type="button" class="row-entry" data-control="open" data-focus-target={isActive || undefined} tabIndex={stop} aria-expanded={isOpen} onClick={onOpen}>
                <span class="row-name">
                    {isNew && <span class="row-badge">new</span>}
                    <bdi>{title}</bdi>
                </span>
                <time class="row-time" lang={dateLanguage} dateTime={entry.time} title={fullTime(entry.time)}>
                    {briefTime(entry.time)}
                </time>
                <span class="row-facts">{facts(list, entry)}</span>
            </button>
            <button type="button" class="row-delete" data-control="delete" tabIndex={stop} aria-label={`Delete ${title}`} onClick={onDelete}>
                <span aria-hidden="true">×</span>
            </button>
        </li>
    );
}
