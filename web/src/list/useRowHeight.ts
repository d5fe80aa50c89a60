import type { RefObject } from "preact";
import { useLayoutEffect, useState } from "preact/hooks";

/** Every row is 3.75rem high, so that it grows with the reader's font; this is the same in pixels. */
function measured(): number {
    return 3.75 * parseFloat(getComputedStyle(document.documentElement).fontSize);
}

/** How high a row is. The font may become another one while the list is shown, which makes what is around the box larger or smaller. */
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
