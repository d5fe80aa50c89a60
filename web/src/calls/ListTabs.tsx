import { useEffect, useRef } from "preact/hooks";
import type { CallList } from "../api/types";
import { callLists } from "../api/types";
import type { IconName } from "../frame/Icon";
import { Icon } from "../frame/Icon";
import { foundRequests } from "../state/callbackRequests";
import { chooseList, filters, list, showsRequests } from "../state/filters";
import { view } from "../state/route";
import { unseen } from "../state/unseen";
import { t } from "../text/language";
import { numberText } from "../text/times";
import { foundCounts } from "./foundCounts";

const icons: Record<CallList | "all" | "requests", IconName> = {
    all: "phone",
    missed: "missed",
    dialled: "outgoing",
    received: "incoming",
    forwarded: "forwarded",
    requests: "request",
};

function count(name: CallList | "all" | "requests") {
    const found = foundCounts.value?.[name === "requests" ? "missed" : name];
    if (name === "requests") {
        // Other filters than the search select calls only.
        const isFiltered = Object.keys(filters.value).some((each) => each !== "search" && each !== "list");
        const waiting = isFiltered ? 0 : (foundRequests.value?.length ?? 0);
        return waiting > 0 && <span class="count">{numberText(waiting)}</span>;
    }
    if (found !== undefined) {
        return (
            <span class="count">
                {numberText(found)}
                <span class="visually-hidden"> {t().find.found("")}</span>
            </span>
        );
    }
    const missed = name === "missed" ? unseen.value.size : 0;
    return (
        missed > 0 && (
            <span class="count count-new" data-test="unseen">
                {numberText(missed)}
                <span class="visually-hidden"> {t().outcomes.isNew}</span>
            </span>
        )
    );
}

/** The lists: each selects calls of the one order of time. While something is searched, each has the number of calls found in it. */
export function ListTabs() {
    const tabs = ["all", ...callLists, "requests"] as const;
    const chosen = view.value !== "calls" ? undefined : showsRequests.value ? "requests" : (list.value ?? "all");
    const row = useRef<HTMLUListElement>(null);
    // The widths of the tabs follow the counts in them.
    const counts = JSON.stringify([foundCounts.value, foundRequests.value?.length, unseen.value.size]);
    // In a narrow window the lists are wider than it.
    useEffect(() => {
        const tab = row.current?.querySelector<HTMLElement>("[aria-current]");
        const box = row.current?.parentElement;
        if (tab && box) {
            box.scrollLeft = tab.offsetLeft - (box.clientWidth - tab.offsetWidth) / 2;
        }
    }, [chosen, counts]);
    return (
        <ul ref={row} class="tabs" aria-label={t().lists.label}>
            {tabs.map((name) => (
                <li key={name}>
                    <a
                        href={name === "all" ? "#/calls" : `#/calls?list=${name}`}
                        class="tab"
                        aria-current={chosen === name ? "true" : undefined}
                        data-test={`list-${name}`}
                        onClick={(event) => {
                            if (view.value === "calls") {
                                event.preventDefault();
                                chooseList(name === "all" ? undefined : name);
                            }
                        }}
                    >
                        <Icon name={icons[name]} />
                        <span>{t().lists[name]}</span>
                        {count(name)}
                    </a>
                </li>
            ))}
        </ul>
    );
}
