import { failures, lineState } from "../state/app";
import { useStore } from "../state/Store";

/** Notices at the top of the page: a lost connection, and failures until they are dismissed or the work succeeds. */
export function Notices() {
    const { online } = useStore(lineState);
    const failed = useStore(failures).all();
    return (
        <div role="alert" class="notices">
            {online === false && (
                <p class="notice" data-test="offline">
                    The connection to the journal is lost. The page shows the last known state and reconnects by itself.
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
