import { useEffect } from "preact/hooks";
import { callHistory, route } from "../state/app";
import { filtersOf, queryOf } from "../state/callFilters";
import { useStore } from "../state/Store";
import { plural } from "../text/names";
import { CallDays } from "./CallDays";
import { FilterBar } from "./FilterBar";
import { MoreButton } from "./MoreButton";
import { useCallDeletion } from "./useCallDeletion";

/** Every call of the journal, also those that the lists do not have any more. */
export function CallsView() {
    const filters = filtersOf(useStore(route).query);
    const query = queryOf(filters);
    const { calls, isRead, hasMore, refusal } = useStore(callHistory);
    const { result, isBusy, deleteFound, deleteOne } = useCallDeletion(filters);
    useEffect(() => callHistory.show(filters), [query]);
    useEffect(() => () => callHistory.hide(), []);
    return (
        <div class="view">
            <FilterBar query={query} refusal={refusal}>
                <button type="button" disabled={isBusy || calls.length === 0} data-test="delete-calls" onClick={() => void deleteFound()}>
                    {query ? "Delete these calls" : "Delete all calls"}
                </button>
            </FilterBar>
            <p role="status" class="hint" data-test="calls-state">
                {result}{" "}
                {refusal ? "" : !isRead ? "Reading the calls …" : hasMore ? `The newest ${plural(calls.length, "call", "calls")}` : plural(calls.length, "call", "calls")}
            </p>
            {isRead && !refusal && calls.length === 0 && (
                <div class="empty">
                    <h2 tabIndex={-1} data-focus-target>
                        {query ? "No call found" : "No calls"}
                    </h2>
                    <p>{query ? "No call of the journal has all these properties." : "Every call appears here when it is over."}</p>
                </div>
            )}
            <CallDays calls={calls} onDelete={(call) => void deleteOne(call)} />
            {hasMore && <MoreButton shown={calls.length} />}
        </div>
    );
}
