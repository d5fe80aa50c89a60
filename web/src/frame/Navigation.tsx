import { deletions, journal } from "../state/app";
import { isList, titles, views, type View } from "../state/route";
import { useStore } from "../state/Store";

function Counts({ view }: { view: View }) {
    if (!isList(view) || !journal.isRead(view)) {
        return null;
    }
    const shown = journal.entries(view).filter((each) => !deletions.isHidden(view, each.entryId));
    const unviewed = view === "missed" ? shown.filter((each) => each.viewed === false).length : 0;
    return (
        <>
            {unviewed > 0 && (
                <span class="count count-new">
                    {unviewed}
                    <span class="only-heard"> new, of</span>
                </span>
            )}
            <span class="count">{shown.length}</span>
        </>
    );
}

export function Navigation({ view }: { view: View }) {
    useStore(journal);
    useStore(deletions);
    return (
        <nav class="navigation" aria-label="Lists and more">
            <ul>
                {views.map((each) => (
                    <li key={each}>
                        <a href={`#/${each}`} aria-current={each === view ? "page" : undefined} data-test={`nav-${each}`}>
                            <span class="navigation-title">{titles[each]}</span> <Counts view={each} />
                        </a>
                    </li>
                ))}
            </ul>
        </nav>
    );
}
