import { computed, effect, signal } from "@preact/signals";
import { api } from "../api/client";
import { callLists, type CallList } from "../api/types";
import { version } from "../state/connection";
import { signedOut } from "../state/failures";
import { filters, queryOf } from "../state/filters";
import { view } from "../state/route";

export type FoundCounts = Record<CallList | "all", number>;

/** The numbers of calls that search and filters find in each list; undefined while there is neither. */
export const foundCounts = signal<FoundCounts | undefined>(undefined);

const pause = 300;
let latest = 0;

/** The query of the filters without the list; empty if none is set. */
const wanted = computed(() => {
    const { list, ...others } = filters.value;
    return view.value === "calls" && !signedOut.value && Object.keys(others).length > 0 ? queryOf(others).toString() : "";
});

async function count(query: string): Promise<void> {
    const counting = ++latest;
    const parameters = new URLSearchParams(query);
    parameters.set("by", "list");
    const { totals, groups } = await api.statistics(parameters);
    if (counting === latest) {
        const of = (list: CallList) => groups.find(({ key }) => key === list)?.calls ?? 0;
        foundCounts.value = { all: totals.calls, ...(Object.fromEntries(callLists.map((each) => [each, of(each)])) as Record<CallList, number>) };
    }
}

let timer: number | undefined;
effect(() => {
    const query = wanted.value;
    void version.value;
    window.clearTimeout(timer);
    if (query === "") {
        ++latest;
        foundCounts.value = undefined;
        return;
    }
    // The counts of an earlier search stay until the next ones are there; a search that cannot be counted has none.
    timer = window.setTimeout(() => {
        count(query).catch(() => (foundCounts.value = undefined));
    }, pause);
});
