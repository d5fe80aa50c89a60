import { ListTabs } from "../calls/ListTabs";
import { view, views, type View } from "../state/route";
import { unseen } from "../state/unseen";
import { t } from "../text/language";
import { Icon, type IconName } from "./Icon";
import { LineChoice } from "./LineChoice";
import { LineState } from "./LineState";
import { isWide } from "./width";

const icons: Record<View, IconName> = { calls: "phone", contacts: "people", statistics: "chart", settings: "gear" };

function Link({ to }: { to: View }) {
    const missed = to === "calls" ? unseen.value.size : 0;
    return (
        <a href={`#/${to}`} aria-current={view.value === to ? "page" : undefined} data-test={`nav-${to}`}>
            <Icon name={icons[to]} />
            <span>{t().views[to]}</span>
            {missed > 0 && !isWide.value && (
                <span class="badge">
                    {missed}
                    <span class="visually-hidden"> {t().outcomes.isNew}</span>
                </span>
            )}
        </a>
    );
}

/** The views: at the side with the lists in a wide window, else at the bottom. */
export function Navigation() {
    return (
        <header class="navigation">
            <h1 class={isWide.value ? "brand" : "visually-hidden"}>{t().name}</h1>
            {isWide.value && <LineChoice />}
            {isWide.value && (
                <nav aria-label={t().lists.label}>
                    <ListTabs />
                </nav>
            )}
            <nav aria-label={t().navigation} class="views">
                <ul>
                    {(isWide.value ? views.filter((each) => each !== "calls") : views).map((each) => (
                        <li key={each}>
                            <Link to={each} />
                        </li>
                    ))}
                </ul>
            </nav>
            {isWide.value && <LineState />}
        </header>
    );
}
