import { useLayoutEffect, useRef, useState } from "preact/hooks";
import { dial } from "../dial/dial";
import { mainFeed } from "../state/feeds";
import { deleteLater } from "../state/deletions";
import { closeDetails, openDetails, parameter } from "../state/route";
import { t } from "../text/language";
import { titleOf } from "../text/people";
import { dayTitle } from "../text/times";
import { CallRow } from "./CallRow";
import type { Group, Row } from "./rows";
import { endSelecting, isSelected, isSelecting, rows, select, selectAll, selection, setExpanded } from "./shown";
import { SingleRow } from "./SingleRow";
import { useMarkSeen } from "./useMarkSeen";
import { useVirtual } from "./useVirtual";

const steps: Record<string, number> = { ArrowDown: 1, ArrowUp: -1, PageDown: 8, PageUp: -8, Home: -Infinity, End: Infinity };

/** The parameters of the address that open the party of a group. */
function detailsOf({ calls: [call] }: Group): Record<string, string> {
    return call.number ? { person: call.number } : { call: String(call.id) };
}

function isOpen(group: Group): boolean {
    const [call] = group.calls;
    return call.number ? parameter("person") === call.number : group.calls.some(({ id }) => parameter("call") === String(id));
}

/** Reads more calls when the end of the list comes near, and newer ones when the user has scrolled back to its begin. */
function useReadMore(last: number, count: number, first: number): void {
    const wasBelow = useRef(false);
    useLayoutEffect(() => {
        if (last >= count - 30) {
            mainFeed.readOlder();
        }
        if (first > 20) {
            wasBelow.current = true;
        } else if (first === 0 && wasBelow.current && mainFeed.hasNewer.value) {
            wasBelow.current = false;
            void mainFeed.readNewer();
        }
    }, [last, count, first]);
}

/** The keys of a row; docs/page.md lists them. Returns true if the key was one of them. */
function pressed(event: KeyboardEvent, group: Group): boolean {
    const [call] = group.calls;
    switch (event.key) {
        case "ArrowRight":
        case "ArrowLeft":
            setExpanded(group, event.key === "ArrowRight");
            return true;
        case " ":
            select(group.calls, !isSelected(group));
            return true;
        case "Delete":
            deleteLater("calls", (isSelecting.value && selection.value.length > 0 ? selection.value : group.calls).map(({ id }) => id));
            return true;
        case "c":
            if (call.number) {
                void dial({ number: call.number, who: titleOf(call) });
            }
            return true;
        case "Escape":
            if (isSelecting.value) {
                endSelecting();
            } else {
                closeDetails();
            }
            return true;
        default:
            return false;
    }
}

/**
 * The calls under the headings of their days; only the rows near the visible part are rendered. One row is active: Tab stops at its
 * controls only, the arrow keys move on to the same control of another row.
 */
export function CallList() {
    const box = useRef<HTMLDivElement>(null);
    const shown = rows.value;
    const [active, setActive] = useState({ key: "", index: 0 });
    const [focus, setFocus] = useState<string>();
    const known = active.key ? shown.findIndex(({ key }) => key === active.key) : -1;
    const near = known >= 0 ? known : Math.min(active.index, shown.length - 1);
    const index = nearestGroup(shown, near);
    const virtualizer = useVirtual(box, shown, index, mainFeed.hasNewer.value);
    const items = virtualizer.getVirtualItems();
    const { startIndex = 0, endIndex = 0 } = virtualizer.range ?? {};
    useReadMore(endIndex, shown.length, startIndex);
    useMarkSeen(() => {
        const element = box.current;
        const isShown = (item: { start: number; end: number }) => element && item.start >= element.scrollTop - 8 && item.end <= element.scrollTop + element.clientHeight + 8;
        return element?.clientHeight ? virtualizer.getVirtualItems().filter(isShown).map(({ index: at }) => rows.value[at]).filter((row) => row?.kind === "group") : [];
    });
    useLayoutEffect(() => {
        if (focus) {
            const row = box.current?.querySelector(`[data-index="${index}"]`);
            const control = row?.querySelector<HTMLElement>(`[data-control="${focus}"]`) ?? row?.querySelector<HTMLElement>('[data-control="open"]');
            control?.focus();
            setFocus(undefined);
        }
    }, [focus, index]);

    const move = (step: number, control: string) => {
        const groups = shown.flatMap((row, at) => (row.kind === "group" ? [at] : []));
        const to = groups[Math.max(0, Math.min(groups.length - 1, groups.indexOf(index) + step))];
        if (to !== undefined) {
            virtualizer.scrollToIndex(to === groups[0] ? 0 : to, { align: "auto" });
            setActive({ key: shown[to]?.key ?? "", index: to });
            setFocus(control);
        }
    };
    const press = (event: KeyboardEvent) => {
        const target = event.target as HTMLElement;
        const control = target.dataset.control;
        const row = shown[index];
        if (event.key.toLowerCase() === "a" && (event.ctrlKey || event.metaKey)) {
            event.preventDefault();
            selectAll();
        } else if (control && row?.kind === "group" && !event.ctrlKey && !event.altKey && !event.metaKey) {
            const step = steps[event.key];
            const isOwnKey = event.key === " " && control !== "open";
            if (step !== undefined) {
                event.preventDefault();
                move(step, control);
            } else if (!isOwnKey && pressed(event, row)) {
                event.preventDefault();
            }
        }
    };
    const contentOf = (row: Row) => {
        switch (row.kind) {
            case "day":
                return <h2 class="day">{dayTitle(row.day)}</h2>;
            case "single":
                return <SingleRow call={row.call} group={row.group} />;
            case "older":
                return <p class="more">{t().reading}</p>;
            default:
                return <CallRow group={row} isActive={shown[index] === row} isOpen={isOpen(row)} onOpen={() => openDetails(detailsOf(row))} />;
        }
    };
    return (
        <div class="scroll" ref={box} data-test="rows" onKeyDown={press}>
            <ul class="rows" style={{ height: `${virtualizer.getTotalSize()}px` }}>
                {items.map(({ key, index: at, start, size }) => {
                    const row = shown[at];
                    return (
                        row && (
                            <li
                                key={key}
                                data-index={at}
                                style={{ transform: `translateY(${start}px)`, height: `${size}px` }}
                                onFocusIn={() => row.kind === "group" && setActive({ key: row.key, index: at })}
                            >
                                {contentOf(row)}
                            </li>
                        )
                    );
                })}
            </ul>
        </div>
    );
}

/** The row at the index or the first one after it that has a group, else the last one before it; -1 if there is none. */
function nearestGroup(shown: readonly Row[], index: number): number {
    for (let at = Math.max(0, index); at < shown.length; ++at) {
        if (shown[at]?.kind === "group") {
            return at;
        }
    }
    for (let at = Math.min(index, shown.length - 1); at >= 0; --at) {
        if (shown[at]?.kind === "group") {
            return at;
        }
    }
    return -1;
}
