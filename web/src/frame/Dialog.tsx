import type { ComponentChildren } from "preact";
import { useLayoutEffect, useRef } from "preact/hooks";
import { t } from "../text/language";

interface Props {
    title: string;
    children: ComponentChildren;
    /** The text of the button that does it. */
    action: string;
    isDangerous?: boolean;
    onConfirm: () => void;
    onClose: () => void;
}

/** Asks before something that cannot be undone. */
export function ConfirmDialog({ title, children, action, isDangerous = false, onConfirm, onClose }: Props) {
    const dialog = useRef<HTMLDialogElement>(null);
    useLayoutEffect(() => dialog.current?.showModal(), []);
    return (
        <dialog ref={dialog} aria-labelledby="dialog-title" data-test="dialog" onClose={onClose}>
            <h2 id="dialog-title">{title}</h2>
            <p>{children}</p>
            <div class="dialog-actions">
                <button type="button" onClick={() => dialog.current?.close()}>
                    {t().cancel}
                </button>
                <button
                    type="button"
                    class={isDangerous ? "main-button danger-button" : "main-button"}
                    data-test="confirm"
                    onClick={() => {
                        dialog.current?.close();
                        onConfirm();
                    }}
                >
                    {action}
                </button>
            </div>
        </dialog>
    );
}
