import { requestText } from "../calls/RequestsList";
import { requests } from "../state/callbackRequests";
import { deleteLater } from "../state/deletions";
import { mayWrite } from "../state/rights";
import { t } from "../text/language";
import { dayAndTime } from "../text/times";

/** The call-back requests between this telephone and the person. */
export function PersonRequests({ number }: { number: string }) {
    const found = requests.value?.filter((each) => each.number === number) ?? [];
    const texts = t().requests;
    return found.map((request) => (
        <section key={request.entryId} class="person-request" data-test="person-request">
            <h3>{texts.title}</h3>
            <p>{requestText(request)}</p>
            <p>
                <time dateTime={request.time}>{texts.since(dayAndTime(request.time))}</time>
            </p>
            {mayWrite.value && (
                <button type="button" data-test="delete-request" onClick={() => deleteLater("requests", [request.entryId])}>
                    {texts.delete}
                </button>
            )}
        </section>
    ));
}
