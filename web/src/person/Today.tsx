import { useEffect, useState } from "preact/hooks";
import { api, zone } from "../api/client";
import type { Counts } from "../api/types";
import { Icon } from "../frame/Icon";
import { version } from "../state/connection";
import { t } from "../text/language";
import { durationText } from "../text/times";

/** Takes the place of a person in a wide window while none is open: the figures of today. */
export function Today() {
    const [counts, setCounts] = useState<Counts>();
    useEffect(() => {
        let isCurrent = true;
        const timer = window.setTimeout(() => {
            api.statistics(new URLSearchParams({ since: "today", limit: "1", tz: zone })).then(
                ({ totals }) => isCurrent && setCounts(totals),
                () => undefined, // read again with the next change
            );
        }, 200);
        return () => {
            isCurrent = false;
            window.clearTimeout(timer);
        };
    }, [version.value]);
    const texts = t().person;
    return (
        <div class="today" data-test="today">
            <Icon name="people" class="today-icon" />
            <p class="today-title">{texts.choose}</p>
            <p class="hint">{texts.chooseText}</p>
            {counts && (
                <p class="today-facts">
                    <strong>{texts.today}</strong>{" "}
                    {counts.calls === 0
                        ? texts.noneToday
                        : [t().calls(counts.calls), counts.missed > 0 && texts.missedToday(counts.missed), counts.talkTime > 0 && texts.talkToday(durationText(counts.talkTime))]
                              .filter(Boolean)
                              .join(" · ")}
                </p>
            )}
        </div>
    );
}
