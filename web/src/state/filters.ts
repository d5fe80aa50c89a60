import { computed } from "@preact/signals";
import { zone } from "../api/client";
import { callLists, type CallList } from "../api/types";
import { dayOf, dayStart, isoDay } from "../text/times";
import { goTo, parameter, setParameters } from "./route";

/** The filters that the address keeps, by their names in the HTTP API. `at` is the day to which the user has jumped. */
export const filterNames = ["search", "since", "until", "direction", "min-duration", "viewed"] as const;
export type FilterName = (typeof filterNames)[number];
export type Filters = Partial<Record<FilterName | "list" | "number", string>>;

export const list = computed(() => callLists.find((each) => each === parameter("list")));
export const showsRequests = computed(() => parameter("list") === "requests");
export const jumpedTo = computed(() => dayOf(parameter("at")));

export const filters = computed<Filters>(() => {
    const set = filterNames.map((name) => [name, parameter(name)]).filter(([, value]) => value);
    return { ...(list.value && { list: list.value }), ...(Object.fromEntries(set) as Filters) };
});

/** The number of filters that are set, without list and search. */
export const filterCount = computed(() => Object.keys(filters.value).filter((name) => name !== "search" && name !== "list" && name !== "until").length);

export function chooseList(name: CallList | "requests" | undefined): void {
    if (name !== parameter("list")) {
        goTo({ list: name, at: undefined });
    }
}

export function clearFilters(): void {
    setParameters({ ...Object.fromEntries(filterNames.map((name) => [name, undefined])), at: undefined });
}

/** The query for the server: days and times are those of the browser's time zone. `until` includes its day. */
export function queryOf({ until, ...others }: Filters): URLSearchParams {
    const query = new URLSearchParams(others);
    const last = dayOf(until);
    if (until) {
        query.set("until", last ? isoDay(dayStart(last, 1)) : until);
    }
    if (others.since || until) {
        query.set("tz", zone);
    }
    return query;
}
