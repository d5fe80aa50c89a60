import { deletions, journal, shownEntries, unviewedShown } from "../state/app";
import { isList, titles, views, type View } from "../state/route";
import { useStore } from "../state/Store";

function Counts({ view }: { view: View }) {
    if (!isList(view) || !journal.isRead(view)) {
        return null;
    }
    const unviewed = view === "missed" ? unviewedShown() : 0;
    return (
        <>
            {unviewed > 0 && (
                <span class="count count-new">
                    {unviewed}
                    <span class="visually-hidden"> new, of</span>
                </span>
            )}
            <span class="count">{shownEntries(view).length}</span>
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
