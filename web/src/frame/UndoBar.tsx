import { useEffect } from "preact/hooks";
import { pause, resume, summary, undo, waitingCount } from "../state/deletions";
import { t } from "../text/language";

function isText(target: EventTarget | null): boolean {
    return target instanceof HTMLElement && (target.matches("input:not([type=checkbox]), textarea, select") || target.isContentEditable);
}

/** True for Ctrl+Z, also with Caps Lock; on a keyboard without Latin letters, for the key at the position of Z. */
function isUndo({ key, code, ctrlKey, metaKey, shiftKey }: KeyboardEvent): boolean {
    return (ctrlKey || metaKey) && !shiftKey && (key.toLowerCase() === "z" || (code === "KeyZ" && key > "~"));
}

/** Shows the latest deletions and the button that undoes them. */
export function UndoBar() {
    const count = waitingCount();
    useEffect(() => {
        const press = (event: KeyboardEvent) => {
            if (isUndo(event) && !isText(event.target) && waitingCount() > 0) {
                event.preventDefault();
                undo();
            }
        };
        window.addEventListener("keydown", press);
        return () => window.removeEventListener("keydown", press);
    }, []);
    return (
        <div role="status" class={count > 0 ? "undo" : "undo undo-empty"}>
            {count > 0 && (
                <>
                    <span>{summary()}</span>
                    <button
                        type="button"
                        data-test="undo"
                        title="Ctrl+Z"
                        aria-keyshortcuts="Control+Z"
                        onClick={undo}
                        onFocus={pause}
                        onBlur={resume}
                        onMouseEnter={pause}
                        onMouseLeave={resume}
                    >
                        {t().undo}
                    </button>
                </>
            )}
        </div>
    );
}
