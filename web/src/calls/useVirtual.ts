import { elementScroll, observeElementOffset, observeElementRect, Virtualizer } from "@tanstack/virtual-core";
import type { RefObject } from "preact";
import { useCallback, useEffect, useLayoutEffect, useMemo, useReducer, useRef, useState } from "preact/hooks";
import type { Row } from "./rows";

/** Heights of the rows in rem; the style sheets of the rows have the same. */
const heights: Record<Row["kind"], number> = { day: 2.25, group: 4, single: 2.75, older: 3.5 };

/** The pixels of a rem, which change with the browser's font size. */
function useRem(): number {
    const [rem, setRem] = useState(() => parseFloat(getComputedStyle(document.documentElement).fontSize));
    useEffect(() => {
        const look = () => setRem(parseFloat(getComputedStyle(document.documentElement).fontSize));
        window.addEventListener("resize", look);
        return () => window.removeEventListener("resize", look);
    }, []);
    return rem;
}

/** True while the page is printed, when all rows are rendered. */
function useIsPrinting(): boolean {
    const [isPrinting, setPrinting] = useState(false);
    useEffect(() => {
        const [begin, end] = [() => setPrinting(true), () => setPrinting(false)];
        window.addEventListener("beforeprint", begin);
        window.addEventListener("afterprint", end);
        return () => {
            window.removeEventListener("beforeprint", begin);
            window.removeEventListener("afterprint", end);
        };
    }, []);
    return isPrinting;
}

/**
 * Renders the rows near the visible part of the box only. When rows are added or removed above the visible part, it stays where it is,
 * unless the box is scrolled to its begin and there are no rows before it (`hasMoreAbove`). `keep` is the index of a row that is always
 * rendered: the one that has the focus.
 */
export function useVirtual(box: RefObject<HTMLElement>, rows: readonly Row[], keep: number, hasMoreAbove: boolean) {
    const [, render] = useReducer<number, void>((count) => count + 1, 0);
    const rem = useRem();
    const isPrinting = useIsPrinting();
    // The positions of all rows are computed again when this function changes.
    const getItemKey = useCallback((index: number) => rows[index]?.key ?? index, [rows]);
    const options = {
        count: rows.length,
        getScrollElement: () => box.current,
        estimateSize: (index: number) => heights[rows[index]?.kind ?? "group"] * rem,
        getItemKey,
        overscan: 8,
        scrollToFn: elementScroll,
        observeElementRect,
        observeElementOffset,
        onChange: () => render(),
        rangeExtractor: (range: { startIndex: number; endIndex: number; overscan: number; count: number }) => {
            const [first, last] = isPrinting ? [0, range.count - 1] : [Math.max(0, range.startIndex - range.overscan), Math.min(range.count - 1, range.endIndex + range.overscan)];
            const shown = Array.from({ length: Math.max(0, last - first + 1) }, (_, at) => first + at);
            return keep >= 0 && keep < range.count && (keep < first || keep > last) ? [...shown, keep] : shown;
        },
    };
    const virtualizer = useMemo(() => new Virtualizer<HTMLElement, HTMLElement>(options), []);
    virtualizer.setOptions(options);
    useLayoutEffect(() => virtualizer._didMount(), []);
    useLayoutEffect(() => virtualizer._willUpdate());
    useLayoutEffect(() => virtualizer.measure(), [rem]);
    useAnchor(box, rows, virtualizer, hasMoreAbove);
    return virtualizer;
}

/** Scrolls by as much as the topmost visible row has moved. */
function useAnchor(box: RefObject<HTMLElement>, rows: readonly Row[], virtualizer: Virtualizer<HTMLElement, HTMLElement>, hasMoreAbove: boolean): void {
    const anchor = useRef({ key: "", start: 0, isKept: false });
    useLayoutEffect(() => {
        const element = box.current;
        const before = anchor.current;
        if (element && (element.scrollTop > 0 || before.isKept) && before.key) {
            const index = rows.findIndex(({ key }) => key === before.key);
            virtualizer.getTotalSize();
            const start = virtualizer.measurementsCache[index]?.start;
            if (start !== undefined && start !== before.start) {
                element.scrollTop += start - before.start;
            }
        }
    }, [rows]);
    useLayoutEffect(() => {
        const top = virtualizer.scrollOffset ?? 0; // reading the scroll position of the box would lay the page out
        // A row that stays when others come: not a heading, not a button.
        const first = virtualizer.getVirtualItems().find(({ index, end }) => end > top && rows[index]?.kind === "group");
        anchor.current = { key: String(first?.key ?? ""), start: first?.start ?? 0, isKept: hasMoreAbove };
    });
}
