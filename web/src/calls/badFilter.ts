import { filterNames } from "../state/filters";
import { parameter } from "../state/route";
import { t } from "../text/language";

/** The filter of the address that the server's message is about, as the page names it; else the message. */
export function badFilter(message: string): string {
    const name = filterNames.find((each) => new RegExp(`\\b${each}\\b`).test(message) && parameter(each));
    const texts = t().find;
    const labels = {
        search: texts.search,
        since: texts.from,
        until: texts.to,
        direction: texts.direction,
        "min-duration": texts.minimum,
        viewed: texts.seen,
    };
    return name ? `${labels[name]} “${parameter(name)}”` : message.replace(/\.$/, "");
}
