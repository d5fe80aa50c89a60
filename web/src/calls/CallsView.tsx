import { useEffect, useState } from "preact/hooks";
import { isWide } from "../frame/width";
import { Today } from "../person/Today";
import { PersonPanel } from "../person/PersonPanel";
import { mainFeed } from "../state/feeds";
import { filters, jumpedTo, showsRequests } from "../state/filters";
import { detailsOpen, setParameters } from "../state/route";
import { t } from "../text/language";
import { dayTitle } from "../text/times";
import { CallList } from "./CallList";
import { EmptyCalls } from "./EmptyCalls";
import { FilterChips, FilterPanel } from "./FilterPanel";
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

/** The bar after a jump to a day. */
function JumpChip() {
    const day = jumpedTo.value;
    return (
        day && (
            <button type="button" class="chip" data-test="to-newest" onClick={() => setParameters({ at: undefined })}>
                {t().find.upTo(dayTitle(day))} ×<span class="visually-hidden">, {t().find.toNewest}</span>
            </button>
        )
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
                {filtersOpen ? <FilterPanel refusal={mainFeed.refusal.value} /> : <FilterChips>{jumpedTo.value && <JumpChip />}</FilterChips>}
                {!filtersOpen && mainFeed.refusal.value && (
                    <p class="refusal" role="alert" data-test="filter-refusal">
                        {t().find.refused(mainFeed.refusal.value)}
                    </p>
                )}
                <Content />
                {isSelecting.value && <SelectionBar />}
            </div>
            <aside class="details-column" aria-label={t().person.label}>
                {detailsOpen.value ? <PersonPanel /> : <Today />}
            </aside>
        </div>
    );
}
