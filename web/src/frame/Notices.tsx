import { online } from "../state/connection";
import { dismiss, failures } from "../state/failures";
import { t } from "../text/language";
import { lineCondition } from "./LineState";
import { isWide } from "./width";

/** Notices at the top of the page: a lost connection, and failures until they are dismissed or the work succeeds. */
export function Notices() {
    const { kind, text } = lineCondition();
    return (
        <div role="alert" class="notices">
            {online.value === false && (
                <p class="notice" data-test="offline">
                    {t().line.offlineNotice}
                </p>
            )}
            {online.value && !isWide.value && kind === "bad" && (
                <p class="notice" data-test="line-notice">
                    {text}
                </p>
            )}
            {[...failures.value].map(([work, failure]) => (
                <p key={work} class="notice" data-test="failure">
                    {failure()}{" "}
                    <button type="button" onClick={() => dismiss(work)}>
                        {t().dismiss}
                    </button>
                </p>
            ))}
        </div>
    );
}
