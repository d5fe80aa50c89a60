import { useLayoutEffect, useRef, useState } from "preact/hooks";
import type { Entry, ListName } from "../api/types";
import { keyOf } from "../state/entries";
import { listLabel } from "../state/route";
import { EntryRow } from "./EntryRow";
import { useMarkViewed } from "./useMarkViewed";
import { useRowHeight } from "./useRowHeight";
import { useWindow } from "./useWindow";

interface Props {
    list: ListName;
    entries: readonly Entry[];
    selected: ReadonlySet<string>;
    openKey: string | undefined;
    onSelect: (entry: Entry, on: boolean) => void;
    onOpen: (entry: Entry) => void;
    onDelete: (entry: Entry) => void;
}

const steps: Record<string, number> = { ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8, Home: -Infinity, End: Infinity };

/**
 * The rows of a list; only those near the visible part are rendered. One row is active: Tab stops at its controls only, the arrow keys
 * move to the same control of another row. The active row is identified by its entry, so it does not change when calls come in above.
 */
export function EntryList({ list, entries, selected, openKey, onSelect, onOpen, onDelete }: Props) {
    const box = useRef<HTMLDivElement>(null);
    const rowHeight = useRowHeight(box);
    const [active, setActive] = useState({ key: "", index: 0 });
    const anchor = useRef({ key: "", top: 0 });
    const [focus, setFocus] = useState<string>();
    const { first, last } = useWindow(box, rowHeight, entries.length);
    useMarkViewed(box, entries, rowHeight);

    const known = entries.findIndex((each) => keyOf(each) === active.key);
    const index = known >= 0 ? known : Math.min(active.index, entries.length - 1);

    // Keeps the topmost visible row in place when rows above it are added or removed, or the rows change their height. Runs after every
    // rendering, so after every scrolled row.
    useLayoutEffect(() => {
        const element = box.current;
        if (!element) {
            return;
        }
        const now = entries.findIndex((each) => keyOf(each) === anchor.current.key);
        if (element.scrollTop > 0 && now >= 0) {
            element.scrollTop += now * rowHeight - anchor.current.top;
        }
        const top = Math.min(Math.floor(element.scrollTop / rowHeight), entries.length - 1);
        const entry = entries[top];
        anchor.current = { key: entry ? keyOf(entry) : "", top: top * rowHeight };
    });
    useLayoutEffect(() => {
        if (focus) {
            box.current?.querySelector<HTMLElement>(`[data-index="${index}"] [data-control="${focus}"]`)?.focus();
            setFocus(undefined);
        }
    }, [focus, index]);

    const move = (to: number, control: string) => {
        const target = Math.max(0, Math.min(entries.length - 1, to));
        const element = box.current;
        if (element) {
            const top = target * rowHeight;
            const lowest = top + rowHeight - element.clientHeight;
            element.scrollTop = Math.max(lowest, Math.min(top, element.scrollTop));
        }
        const entry = entries[target];
        setActive({ key: entry ? keyOf(entry) : "", index: target });
        setFocus(control);
    };

    const press = (event: KeyboardEvent) => {
        const control = (event.target as HTMLElement).dataset.control;
        const step = steps[event.key];
        const entry = entries[index];
        if (!control || !entry || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        if (step !== undefined) {
            event.preventDefault();
            move(index + step, control);
        } else if (event.key === "Delete") {
            event.preventDefault();
            onDelete(entry);
        }
    };

    const shown = entries.slice(first, last).map((entry, at) => ({ entry, at: first + at }));
    const activeEntry = entries[index];
    if (activeEntry && (index < first || index >= last)) {
        shown.push({ entry: activeEntry, at: index });
    }
    return (
        <div class="rows-box" ref={box} data-test="rows">
            <ul class="rows" aria-label={listLabel(list)} style={{ height: `${entries.length * rowHeight}px` }} onKeyDown={press}>
                {shown.map(({ entry, at }) => (
                    <EntryRow
                        key={keyOf(entry)}
                        list={list}
                        entry={entry}
                        index={at}
                        count={entries.length}
                        top={at * rowHeight}
                        isActive={at === index}
                        isSelected={selected.has(keyOf(entry))}
                        isOpen={keyOf(entry) === openKey}
                        onFocus={() => setActive({ key: keyOf(entry), index: at })}
                        onSelect={(on) => onSelect(entry, on)}
                        onOpen={() => onOpen(entry)}
                        onDelete={() => onDelete(entry)}
                    />
                ))}
            </ul>
        </div>
    );
}
