import { failures, lineState } from "../state/app";
import { useStore } from "../state/Store";

/** What went wrong, above everything else: a lost connection as long as it is lost, a failure until it is dismissed or made good. */
export function Notices() {
    const { online } = useStore(lineState);
    const failed = useStore(failures).all();
    return (
        <div role="alert" class="notices">
            {online === false && (
                <p class="notice" data-test="offline">
                    The connection to the journal is lost. What you see is how it was; the page goes on by itself when the journal is back.
                </p>
            )}
            {failed.map(([work, text]) => (
                <p key={work} class="notice" data-test="failure">
                    {text}{" "}
                    <button type="button" onClick={() => failures.dismiss(work)}>
                        Dismiss
                    </button>
                </p>
            ))}
        </div>
    );
}
