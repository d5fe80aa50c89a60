/** The filters of calls, by their names in the HTTP API; docs/http-api.md describes the values. */
export const filterNames = ["search", "number", "since", "until", "list", "direction", "viewed", "min-duration"] as const;
export type FilterName = (typeof filterNames)[number];
export type CallFilters = Partial<Record<FilterName, string>>;

/** The filters of a query; parameters that are no filter are left out. */
export function filtersOf(query: string): CallFilters {
    const parameters = new URLSearchParams(query);
    return Object.fromEntries(filterNames.map((name) => [name, parameters.get(name)?.trim()]).filter(([, value]) => value));
}

export function queryOf(filters: CallFilters): string {
    const set = filterNames.map((name) => [name, filters[name]?.trim() ?? ""] as [string, string]).filter(([, value]) => value);
    return new URLSearchParams(set).toString();
}

/** The query for the server: days and times are those of the browser's time zone. */
export function callQuery(filters: CallFilters): string {
    const query = queryOf(filters);
    const zone = Intl.DateTimeFormat().resolvedOptions().timeZone;
    return filters.since || filters.until ? `${query}&tz=${encodeURIComponent(zone)}` : query;
}
