import { useEffect, useRef } from "preact/hooks";
import { callHistory } from "../state/app";

/** Reads the next calls when it is pressed, or scrolled near the window. `shown` is the number of calls above it. */
export function MoreButton({ shown }: { shown: number }) {
    const button = useRef<HTMLButtonElement>(null);
    useEffect(() => {
        const near = new IntersectionObserver(([entry]) => entry?.isIntersecting && callHistory.readMore(), {
            root: button.current?.closest(".view") ?? null,
            rootMargin: "600px",
        });
        if (button.current) {
            near.observe(button.current);
        }
        return () => near.disconnect();
    }, [shown]);
    return (
        <button type="button" class="more-button" ref={button} data-test="more" onClick={() => callHistory.readMore()}>
            More
        </button>
    );
}
