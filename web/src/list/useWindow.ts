import { options, type RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

const spare = 8;

/** The visible part of a list, in pixels from its top. The list scrolls in its box; in a low window the page scrolls. */
export function visiblePart(box: HTMLElement): { top: number; bottom: number } {
    const { top, bottom } = box.getBoundingClientRect();
    const at = box.scrollTop - top;
    return { top: at + Math.max(0, top), bottom: at + Math.min(window.innerHeight, bottom) };
}

/** The rows to render: the visible ones and some above and below. `last` is exclusive. */
export function useWindow(box: RefObject<HTMLElement>, rowHeight: number, count: number): { first: number; last: number } {
    const [seen, setSeen] = useState({ first: 0, last: 30 });
    useLayoutEffect(() => {
        const element = box.current;
        if (!element) {
            return;
        }
        const show = (first: number, last: number) =>
            setSeen((before) => (before.first === first && before.last === last ? before : { first, last }));
        const measure = () => {
            const { top, bottom } = visiblePart(element);
            show(Math.floor(top / rowHeight), Math.ceil(bottom / rowHeight));
        };
        // On paper all rows are visible; the browser prints without waiting for a rendering.
        const showAll = () => {
            const later = options.debounceRendering;
            options.debounceRendering = (render) => render();
            show(0, count);
            options.debounceRendering = later as typeof options.debounceRendering & {};
        };
        measure();
        const size = new ResizeObserver(measure);
        size.observe(element);
        const listening = new AbortController();
        for (const [target, event, listener] of [
            [element, "scroll", measure],
            [window, "scroll", measure],
            [window, "resize", measure],
            [window, "beforeprint", showAll],
            [window, "afterprint", measure],
        ] as const) {
            target.addEventListener(event, listener, { passive: true, signal: listening.signal });
        }
        return () => {
            size.disconnect();
            listening.abort();
        };
    }, [box, rowHeight, count]);
    return { first: Math.max(0, Math.min(seen.first, count) - spare), last: Math.min(count, seen.last + spare) };
}
