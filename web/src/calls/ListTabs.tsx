import { useEffect, useRef } from "preact/hooks";
import type { CallList } from "../api/types";
import { callLists } from "../api/types";
import type { IconName } from "../frame/Icon";
import { Icon } from "../frame/Icon";
import { requests } from "../state/callbackRequests";
import { status } from "../state/connection";
import { chooseList, list, showsRequests } from "../state/filters";
import { view } from "../state/route";
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
        const waiting = requests.value?.length ?? 0;
        return waiting > 0 && <span class="count">{numberText(waiting)}</span>;
    }
    if (found !== undefined) {
        return <span class="count">{numberText(found)}</span>;
    }
    const unseen = name === "missed" ? (status.value?.lists.missed.unviewed ?? 0) : 0;
    return (
        unseen > 0 && (
            <span class="count count-new" data-test="unseen">
                {numberText(unseen)}
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
    // In a narrow window the lists are wider than it.
    useEffect(() => row.current?.querySelector("[aria-current]")?.scrollIntoView({ block: "nearest", inline: "center" }), [chosen]);
    return (
        <ul ref={row} class="tabs" aria-label={t().lists.label}>
            {tabs.map((name) => (
                <li key={name}>
                    <a
                        href="#/calls"
                        class="tab"
                        aria-current={chosen === name ? "true" : undefined}
                        data-test={`list-${name}`}
                        onClick={(event) => {
                            if (view.value === "calls") {
                                event.preventDefault();
                                chooseList(name === "all" ? undefined : name);
                            } else {
                                event.currentTarget.href = name === "all" ? "#/calls" : `#/calls?list=${name}`;
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
