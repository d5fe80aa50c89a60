import type { Call, Party } from "../api/types";
import { Avatar } from "../frame/Avatar";
import { t } from "../text/language";
import { briefDay, durationText } from "../text/times";

interface Props {
    name: string;
    /** The name whose initials are shown; empty if only the number is known. */
    initialsOf: string;
    party?: Party | undefined;
    calls: readonly Call[];
}

/** "8 calls · 1 h 31 min talked · first on 13 Nov". */
function summary(party: Party | undefined, calls: readonly Call[]): string {
    const count = party?.totals.calls ?? calls.length;
    const talk = party?.totals.talkTime ?? calls.reduce((sum, each) => sum + each.duration, 0);
    const first = party?.firstCall ?? calls[calls.length - 1]?.start;
    return t().person.summary(t().calls(count), talk > 0 ? durationText(talk) : "", first && count > 1 ? briefDay(first) : "");
}

export function PersonHead({ name, initialsOf, party, calls }: Props) {
    const company = party?.contact?.company;
    const facts = [party?.place, company !== name && company].filter(Boolean);
    return (
        <header class="person-head">
            <Avatar name={initialsOf} picture={party?.contact?.picture} large />
            <p class="person-name">
                <bdi>{name}</bdi>
            </p>
            {facts.length > 0 && <p class="person-facts">{facts.join(" · ")}</p>}
            <p class="person-summary" data-test="summary">
                {summary(party, calls)}
            </p>
        </header>
    );
}
