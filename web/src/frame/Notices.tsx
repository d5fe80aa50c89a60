import { journal, lineState } from "../state/app";
import { useStore } from "../state/Store";

/** What went wrong, above everything else: a lost connection as long as it is lost, a failure until it is dismissed. */
export function Notices() {
    const { online } = useStore(lineState);
    const { failure } = useStore(journal);
    return (
        <div role="alert" class="notices">
            {online === false && (
                <p class="notice" data-test="offline">
                    The connection to the journal is lost. What you see is how it was; the page goes on by itself when the journal is back.
                </p>
            )}
            {failure && (
                <p class="notice">
                    {failure}{" "}
                    <button type="button" onClick={() => journal.dismissFailure()}>
                        Dismiss
                    </button>
                </p>
            )}
        </div>
    );
}
