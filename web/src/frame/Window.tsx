import type { ComponentChildren, RefObject } from "preact";
import { useLayoutEffect } from "preact/hooks";
import { LiveCalls } from "../live/LiveCalls";

interface Props {
    dialog: RefObject<HTMLDialogElement>;
    title: string;
    test: string;
    children: ComponentChildren;
    onClose: () => void;
}

/** A window above the page. The browser blocks the page below, so the calls that ring or are up are shown here, too. */
export function Window({ dialog, title, test, children, onClose }: Props) {
    useLayoutEffect(() => dialog.current?.showModal(), []);
    return (
        <dialog ref={dialog} aria-labelledby="dialog-title" data-test={test} onClose={onClose}>
            <div class="window">
                <h2 id="dialog-title">{title}</h2>
                {children}
            </div>
            <LiveCalls isInWindow />
        </dialog>
    );
}
