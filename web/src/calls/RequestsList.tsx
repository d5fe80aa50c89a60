import type { CallbackRequest } from "../api/types";
import { CallButton } from "../dial/CallButton";
import { Avatar } from "../frame/Avatar";
import { foundRequests, requests } from "../state/callbackRequests";
import { parameter } from "../state/route";
import { t } from "../text/language";
import { numberOf, titleOf } from "../text/people";
import { dayAndTime } from "../text/times";

/** The next action of the switch. The data does not say which side has asked for it. */
export function requestText({ type, state }: CallbackRequest): string {
    const texts = t().requests;
    return state === "ringing" ? texts.ringing : type === "onBusy" ? texts.busy : type === "onNoReply" ? texts.noReply : texts.asked;
}

function RequestRow({ request }: { request: CallbackRequest }) {
    const who = titleOf(request);
    return (
        <li class={`row request-row${parameter("person") === request.number ? " row-open" : ""}`} data-test="request">
            <Avatar name={request.displayName} />
            <a class="row-main" href={`#/calls?list=requests&person=${encodeURIComponent(request.number)}`} data-control="open">
                <span class="row-name">
                    <bdi>{who}</bdi>
                </span>
                <span class="row-facts">
                    {[request.displayName && numberOf(request), t().requests.since(dayAndTime(request.time))].filter(Boolean).join(" · ")}
                </span>
                <span class="request-text">{requestText(request)}</span>
            </a>
            <CallButton number={request.number} who={who} />
        </li>
    );
}

/** The requests to call back that the telephone system keeps. */
export function RequestsList() {
    const shown = foundRequests.value ?? requests.value;
    const isSearched = shown?.length === 0 && (requests.value?.length ?? 0) > 0;
    return shown?.length === 0 ? (
        <div class="empty" data-test="empty">
            <h2 tabIndex={-1} data-focus-target>
                {isSearched ? t().list.noneFound : t().requests.none}
            </h2>
            <p>{isSearched ? t().list.noneFoundText : t().requests.noneText}</p>
        </div>
    ) : (
        <div class="scroll">
            <ul class="requests" data-focus-target>
                {shown?.map((request) => <RequestRow key={request.entryId} request={request} />)}
            </ul>
        </div>
    );
}
