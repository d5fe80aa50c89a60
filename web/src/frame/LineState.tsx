import { online, status } from "../state/connection";
import { t } from "../text/language";

export interface LineCondition {
    kind: "bad" | "wait" | "good";
    text: string;
}

/** The worst condition of the connections. */
export function lineCondition(): LineCondition {
    const texts = t().line;
    if (online.value === false) {
        return { kind: "bad", text: texts.offline };
    }
    if (!status.value || online.value === undefined) {
        return { kind: "wait", text: texts.connecting };
    }
    const { switch: system, telephone } = status.value;
    if (!system.connected) {
        return { kind: "bad", text: texts.noSwitch };
    }
    if (telephone && telephone.state !== "ready") {
        const text = [texts.telephone[telephone.state], telephone.reason].filter(Boolean).join(": ");
        return { kind: telephone.state === "registering" ? "wait" : "bad", text };
    }
    return system.monitoring ? { kind: "good", text: texts.ready } : { kind: "wait", text: texts.waiting };
}

export function LineState() {
    const { kind, text } = lineCondition();
    const line = status.value?.line;
    return (
        <p class={`line-state line-state-${kind}`} data-test="line-state">
            <span class="line-state-dot" aria-hidden="true" />
            <span>
                {line && <span class="line-state-line">{t().line.of(line)}</span>}
                <span role="status">{text}</span>
            </span>
        </p>
    );
}
