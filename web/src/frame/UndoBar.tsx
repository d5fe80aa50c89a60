import { useEffect } from "preact/hooks";
import { deletions } from "../state/app";
import { useStore } from "../state/Store";

function isText(target: EventTarget | null): boolean {
    return target instanceof HTMLElement && (target.matches("input:not([type=checkbox]), textarea, select") || target.isContentEditable);
}

/** True for Ctrl+Z, also with Caps Lock; on a keyboard without Latin letters, for the key at the position of Z. */
function isUndo({ key, code, ctrlKey, metaKey, shiftKey }: KeyboardEvent): boolean {
    return (ctrlKey || metaKey) && !shiftKey && (key.toLowerCase() === "z" || (code === "KeyZ" && key > "~"));
}

/** Shows the latest deletions and the button that undoes them. */
export function UndoBar() {
    const count = useStore(deletions).count();
    useEffect(() => {
        const undo = (event: KeyboardEvent) => {
            if (isUndo(event) && !isText(event.target) && deletions.count() > 0) {
                event.preventDefault();
                deletions.undo();
            }
        };
        window.addEventListener("keydown", undo);
        return () => window.removeEventListener("keydown", undo);
    }, []);
    return (
        <div role="status" class={count > 0 ? "undo" : "undo undo-empty"}>
            {count > 0 && (
                <>
                    <span>{deletions.summary()}</span>
                    <button
                        type="button"
                        data-test="undo"
                        title="Ctrl+Z"
                        aria-keyshortcuts="Control+Z"
                        onClick={() => deletions.undo()}
                        onFocus={() => deletions.pause()}
                        onBlur={() => deletions.resume()}
                        onMouseEnter={() => deletions.pause()}
                        onMouseLeave={() => deletions.resume()}
                    >
                        Undo
                    </button>
                </>
            )}
        </div>
    );
}
