import { clearFilters, filters, list } from "../state/filters";
import { setParameters } from "../state/route";
import { isJournalOff } from "../state/settings";
import { t } from "../text/language";

/** Shown in place of the list if there are no calls. */
export function EmptyCalls() {
    const texts = t().list;
    const isFiltered = Object.keys(filters.value).some((name) => name !== "list");
    const name = list.value;
    const { search, list: _, ...others } = filters.value;
    const title = search && Object.keys(others).length === 0 ? texts.noneMatches(search) : texts.noneFound;
    return (
        <div class="empty" data-test="empty">
            <h2 tabIndex={-1} data-focus-target>
                {isFiltered ? title : name ? texts.noneIn[name] : texts.none}
            </h2>
            {title !== texts.noneFound && isFiltered ? null : <p>{isFiltered ? texts.noneFoundText : name ? texts.noneInText[name] : texts.noneText}</p>}
            {isFiltered && (
                <button
                    type="button"
                    data-test="show-all"
                    onClick={() => {
                        clearFilters();
                        setParameters({ list: undefined });
                    }}
                >
                    {texts.showAll}
                </button>
            )}
            {isJournalOff.value && (
                <p>
                    {texts.off} <a href="#/settings">{texts.offLink}</a>
                </p>
            )}
        </div>
    );
}
