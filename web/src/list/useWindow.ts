import type { RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

const spare = 8;

/** Which rows of a long list are worth rendering: those that are seen, and some above and below. `last` is not rendered any more. */
export function useWindow(box: RefObject<HTMLElement>, rowHeight: number, count: number): { first: number; last: number } {
    const [seen, setSeen] = useState({ first: 0, last: 30 });
    useLayoutEffect(() => {
        const element = box.current;
        if (!element) {
            return;
        }
        const measure = () => {
            const first = Math.floor(element.scrollTop / rowHeight);
            const last = Math.ceil((element.scrollTop + element.clientHeight) / rowHeight);
            setSeen((before) => (before.first === first && before.last === last ? before : { first, last }));
        };
        measure();
        const size = new ResizeObserver(measure);
        size.observe(element);
        element.addEventListener("scroll", measure, { passive: true });
        return () => {
            size.disconnect();
            element.removeEventListener("scroll", measure);
        };
    }, [box, rowHeight, count]);
    return { first: Math.max(0, Math.min(seen.first, count) - spare), last: Math.min(count, seen.last + spare) };
}
