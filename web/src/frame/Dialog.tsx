import type { ComponentChildren } from "preact";
import { useRef } from "preact/hooks";
import { t } from "../text/language";
import { Window } from "./Window";

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
    return (
        <Window dialog={dialog} title={title} test="dialog" onClose={onClose}>
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
        </Window>
    );
}
