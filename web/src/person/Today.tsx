import { useEffect, useState } from "preact/hooks";
import { api, zone } from "../api/client";
import type { Counts } from "../api/types";
import { Icon } from "../frame/Icon";
import { outcomeOf } from "../calls/outcome";
import { version } from "../state/connection";
import { hiddenCalls, sentCalls } from "../state/deletions";
import { mainFeed } from "../state/feeds";
import { t } from "../text/language";
import { dayStart, durationText } from "../text/times";

interface Figures extends Counts {
    /** Tells the calls that the server had deleted, or was about to delete, when it counted. */
    isLeftOut: (id: number) => boolean;
}

/** The figures without the calls of today that are deleted and can still be brought back. */
function withoutHidden(figures: Figures): Pick<Counts, "calls" | "missed" | "talkTime"> {
    const today = dayStart(new Date()).getTime();
    const isHidden = hiddenCalls();
    const gone = mainFeed.calls.value.filter(({ id, start }) => isHidden(id) && !figures.isLeftOut(id) && Date.parse(start) >= today);
    return {
        calls: figures.calls - gone.length,
        missed: figures.missed - gone.filter((call) => outcomeOf(call) === "missed").length,
        talkTime: figures.talkTime - gone.reduce((sum, { duration }) => sum + duration, 0),
    };
}

/** Takes the place of a person in a wide window while none is open: the figures of today. */
export function Today() {
    const [counts, setCounts] = useState<Figures>();
    useEffect(() => {
        let isCurrent = true;
        const timer = window.setTimeout(() => {
            api.statistics(new URLSearchParams({ since: "today", limit: "1", tz: zone })).then(
                ({ totals }) => isCurrent && setCounts({ ...totals, isLeftOut: sentCalls() }),
                () => undefined, // read again with the next change
            );
        }, 200);
        return () => {
            isCurrent = false;
            window.clearTimeout(timer);
        };
    }, [version.value]);
    const texts = t().person;
    const shown = counts && withoutHidden(counts);
    return (
        <div class="today" data-test="today">
            <Icon name="people" class="today-icon" />
            <p class="today-title">{texts.choose}</p>
            <p class="hint">{texts.chooseText}</p>
            {shown && (
                <p class="today-facts">
                    <strong>{texts.today}</strong>{" "}
                    {shown.calls === 0
                        ? texts.noneToday
                        : [t().calls(shown.calls), shown.missed > 0 && texts.missedToday(shown.missed), shown.talkTime > 0 && texts.talkToday(durationText(shown.talkTime))]
                              .filter(Boolean)
                              .join(" · ")}
                </p>
            )}
        </div>
    );
}
