import { useEffect, useState } from "preact/hooks";
import { Icon } from "../frame/Icon";
import { isWide } from "../frame/width";
import { Today } from "../person/Today";
import { PersonPanel } from "../person/PersonPanel";
import { mainFeed } from "../state/feeds";
import { filters, jumpedTo, list, showsRequests } from "../state/filters";
import { detailsOpen, setParameters } from "../state/route";
import { t } from "../text/language";
import { briefDay, numberText } from "../text/times";
import { badFilter } from "./badFilter";
import { CallList } from "./CallList";
import { EmptyCalls } from "./EmptyCalls";
import { FilterChips, FilterPanel } from "./FilterPanel";
import { foundCounts } from "./foundCounts";
import { ListTabs } from "./ListTabs";
import { RequestsList } from "./RequestsList";
import { SearchBar } from "./SearchBar";
import { SelectionBar } from "./SelectionBar";
import { endSelecting, isSelecting, rows } from "./shown";

function Content() {
    if (showsRequests.value) {
        return <RequestsList />;
    }
    if (!mainFeed.isRead.value && !mainFeed.refusal.value) {
        return <p class="more">{t().reading}</p>;
    }
    return rows.value.length === 0 && !mainFeed.isReading.value ? <EmptyCalls /> : <CallList key={JSON.stringify([filters.value, jumpedTo.value])} />;
}

/** After a jump to a day: back to the newest calls, or on to newer ones. */
function JumpChips() {
    const day = jumpedTo.value;
    return (
        day && (
            <>
                <button type="button" class="chip" data-test="to-newest" onClick={() => setParameters({ at: undefined })}>
                    {mainFeed.isBeforeFirst.value ? t().find.noneBefore(briefDay(day)) : t().find.upTo(briefDay(day))} ×<span class="visually-hidden">, {t().find.toNewest}</span>
                </button>
                {mainFeed.hasNewer.value && (
                    <button type="button" class="chip" data-test="newer" onClick={() => void mainFeed.readNewer()}>
                        <Icon name="up" /> {t().find.newer}
                    </button>
                )}
            </>
        )
    );
}

/** The number of calls that search and filters have found in the shown list. */
function FoundCount() {
    const count = showsRequests.value ? undefined : foundCounts.value?.[list.value ?? "all"];
    return (
        <p class="found" role="status" data-test="found">
            {count !== undefined && count > 0 && t().find.found(numberText(count))}
        </p>
    );
}

/** All calls in one order of time, and beside them the open person. */
export function CallsView() {
    const [filtersOpen, setFiltersOpen] = useState(false);
    const selected = filters.value;
    const key = JSON.stringify([selected, jumpedTo.value]);
    useEffect(() => {
        endSelecting();
        mainFeed.open(selected, jumpedTo.value);
    }, [key]);
    useEffect(() => () => mainFeed.close(), []);
    return (
        <div class={`calls${detailsOpen.value ? " calls-with-details" : ""}`}>
            <div class="calls-column">
                <SearchBar filtersOpen={filtersOpen} onFilters={() => setFiltersOpen(!filtersOpen)} />
                {!isWide.value && (
                    <nav class="tabs-row" aria-label={t().lists.label}>
                        <ListTabs />
                    </nav>
                )}
                {filtersOpen ? <FilterPanel refusal={mainFeed.refusal.value} /> : <FilterChips>{jumpedTo.value && <JumpChips />}</FilterChips>}
                {!filtersOpen && mainFeed.refusal.value && (
                    <p class="refusal" role="alert" data-test="filter-refusal">
                        {t().find.refused(badFilter(mainFeed.refusal.value))}
                    </p>
                )}
                <FoundCount />
                <Content />
                {isSelecting.value && <SelectionBar />}
            </div>
            <aside class="details-column" aria-label={t().person.label}>
                {detailsOpen.value ? <PersonPanel /> : <Today />}
            </aside>
        </div>
    );
}
