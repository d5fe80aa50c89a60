import { lineState } from "../state/app";
import { useStore } from "../state/Store";
import { plural } from "../text/names";

/** The state of the line, the worst condition first. */
function stateText(): { kind: "bad" | "wait" | "good"; text: string } {
    const { online, status } = useStore(lineState);
    if (online === false) {
        return { kind: "bad", text: "No connection to the journal" };
    }
    if (!status) {
        return { kind: "wait", text: "Connecting" };
    }
    if (!status.switch.connected) {
        return { kind: "bad", text: "The switch is not connected" };
    }
    if (!status.switch.monitoring) {
        return { kind: "wait", text: "The line is not monitored" };
    }
    if (status.telephone && status.telephone.state !== "ready") {
        const { state, reason } = status.telephone;
        return { kind: state === "registering" ? "wait" : "bad", text: `The telephone is ${state.replace("-", " ")}${reason && `: ${reason}`}` };
    }
    return { kind: "good", text: "Line monitored" };
}

export function Header() {
    const { kind, text } = stateText();
    const { line, calls = 0 } = lineState.status ?? {};
    return (
        <header class="header">
            <h1>Call journal{line && <span class="header-line"> of {line}</span>}</h1>
            <p class={`line-state line-state-${kind}`} data-test="line-state">
                <span class="line-state-dot" aria-hidden="true" />
                {/* Spoken when it changes, unlike the number of calls. */}
                <span role="status">{text}</span>
                {kind === "good" && `, ${calls > 0 ? plural(calls, "call", "calls") : "no call"} up`}
            </p>
        </header>
    );
}
