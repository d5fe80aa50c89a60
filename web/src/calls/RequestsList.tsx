import type { CallbackRequest } from "../api/types";
import { CallButton } from "../dial/CallButton";
import { Avatar } from "../frame/Avatar";
import { Icon } from "../frame/Icon";
import { requests } from "../state/callbackRequests";
import { deleteLater } from "../state/deletions";
import { t } from "../text/language";
import { numberOf, titleOf } from "../text/people";
import { dayAndTime, fullTime } from "../text/times";

/** The event that the request waits for. */
function waitsFor({ type, state }: CallbackRequest): string {
    const texts = t().requests;
    return state === "ringing" ? texts.ringing : type === "onBusy" ? texts.busy : type === "onNoReply" ? texts.noReply : "";
}

function RequestRow({ request }: { request: CallbackRequest }) {
    const who = titleOf(request);
    return (
        <li class="row" data-test="request">
            <Avatar name={request.displayName} />
            <a class="row-main" href={`#/calls?list=requests&person=${encodeURIComponent(request.number)}`} data-control="open">
                <span class="row-name">
                    <bdi>{who}</bdi>
                </span>
                <span class="row-facts">
                    <span class="row-words">{[request.displayName && numberOf(request), waitsFor(request)].filter(Boolean).join(" · ")}</span>
                </span>
            </a>
            <span class="row-side">
                <time dateTime={request.time} title={fullTime(request.time)}>
                    {dayAndTime(request.time)}
                </time>
            </span>
            <button
                type="button"
                class="icon-button"
                aria-label={t().requests.delete(who)}
                title={t().delete}
                data-test="delete-request"
                onClick={() => deleteLater("requests", [request.entryId])}
            >
                <Icon name="trash" />
            </button>
            <CallButton number={request.number} who={who} />
        </li>
    );
}

/** The requests to call back that the telephone system keeps. */
export function RequestsList() {
    const shown = requests.value;
    return shown?.length === 0 ? (
        <div class="empty" data-test="empty">
            <h2 tabIndex={-1} data-focus-target>
                {t().requests.none}
            </h2>
            <p>{t().requests.noneText}</p>
        </div>
    ) : (
        <div class="scroll">
            <ul class="requests" data-focus-target>
                {shown?.map((request) => <RequestRow key={request.entryId} request={request} />)}
            </ul>
        </div>
    );
}
