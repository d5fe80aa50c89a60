import { useEffect, useState } from "preact/hooks";
import type { LiveCall } from "../api/types";
import { canPlaceCalls } from "../dial/dial";
import { Avatar } from "../frame/Avatar";
import { Icon } from "../frame/Icon";
import { answerCall, hangUp, liveCalls } from "../state/live";
import { openDetails, view } from "../state/route";
import { t } from "../text/language";
import { nameOf, numberOf, titleOf } from "../text/people";
import { clockDuration } from "../text/times";

/** The time since a moment, each second. */
function Since({ time }: { time: string }) {
    const [now, setNow] = useState(Date.now());
    useEffect(() => {
        const timer = window.setInterval(() => setNow(Date.now()), 1000);
        return () => window.clearInterval(timer);
    }, []);
    return <time dateTime={time}>{clockDuration(Math.max(0, (now - Date.parse(time)) / 1000))}</time>;
}

function stateText({ direction, state }: LiveCall): string {
    const texts = t().live;
    if (state === "held") {
        return texts.held;
    }
    return state === "connected" ? texts.talking : direction === "incoming" ? texts.incoming : texts.calling;
}

function isRinging({ direction, state }: LiveCall): boolean {
    return direction === "incoming" && (state === "ringing" || state === "offered");
}

function Card({ call, isInWindow }: { call: LiveCall; isInWindow: boolean }) {
    const texts = t().live;
    const who = titleOf(call);
    const rings = isRinging(call);
    const facts = [call.displayName && numberOf(call), call.place].filter(Boolean).join(" · ");
    const controls = canPlaceCalls();
    return (
        <li class={rings ? "live-call live-ringing" : "live-call"} data-test="live-call">
            <Avatar name={nameOf(call)} />
            <span class="live-text">
                <span class="live-name">
                    {call.number && view.value === "calls" && !isInWindow ? (
                        <button type="button" class="link-button" onClick={() => openDetails({ person: call.number })}>
                            <bdi>{who}</bdi>
                        </button>
                    ) : (
                        <bdi>{who}</bdi>
                    )}{" "}
                    <span class="live-state">
                        {stateText(call)} · <Since time={call.connectedSince ?? call.since} />
                    </span>
                </span>
                {facts && <span class="live-facts">{facts}</span>}
            </span>
            {controls && rings && (
                <button type="button" class="main-button good-button" data-test="take-call" onClick={() => void answerCall(call)}>
                    <Icon name="phone" />
                    <span>{texts.take}</span>
                </button>
            )}
            {controls && (
                <button type="button" class="main-button danger-button" data-test="hang-up" onClick={() => void hangUp(call)}>
                    <Icon name="hangUp" />
                    <span>{rings ? texts.decline : texts.hangUp}</span>
                </button>
            )}
        </li>
    );
}

/** The calls that ring or are up, on top of every view and of a window above it. */
export function LiveCalls({ isInWindow = false }: { isInWindow?: boolean }) {
    const calls = liveCalls.value;
    return (
        <section class={calls.length > 0 ? "live" : "live live-empty"} aria-label={t().live.label}>
            <ul>
                {calls.map((call) => (
                    <Card key={call.callId} call={call} isInWindow={isInWindow} />
                ))}
            </ul>
            <p class="visually-hidden" role="status">
                {calls.filter(isRinging).map((call) => t().live.title(titleOf(call)))}
            </p>
        </section>
    );
}
