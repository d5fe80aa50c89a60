import type { RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

/** The height of a row in pixels: 3.75rem, so that it grows with the user's font. */
function measured(): number {
    return 3.75 * parseFloat(getComputedStyle(document.documentElement).fontSize);
}

/** The height of a row. A change of the font resizes the surroundings of the box, which triggers a new measurement. */
export function useRowHeight(box: RefObject<HTMLElement>): number {
    const [height, setHeight] = useState(measured);
    useLayoutEffect(() => {
        const size = new ResizeObserver(() => setHeight(measured));
        if (box.current) {
            size.observe(box.current);
        }
        return () => size.disconnect();
    }, [box]);
    return height;
}
