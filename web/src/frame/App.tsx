import { useEffect } from "preact/hooks";
import { CallsView } from "../calls/CallsView";
import { ContactsView } from "../contacts/ContactsView";
import { ListView } from "../list/ListView";
import { TimesView } from "../heatmap/TimesView";
import { SettingsView } from "../settings/SettingsView";
import { deletions, failures, journal, route, unviewedShown } from "../state/app";
import { isList, titles } from "../state/route";
import { useStore } from "../state/Store";
import { Header } from "./Header";
import { Navigation } from "./Navigation";
import { Notices } from "./Notices";
import { SignIn } from "./SignIn";
import { UndoBar } from "./UndoBar";

export function App() {
    const { view } = useStore(route);
    const { signedOut } = useStore(failures);
    const { announcement } = useStore(journal);
    useStore(deletions);
    const unviewed = unviewedShown();

    useEffect(() => {
        document.title = `${unviewed > 0 ? `(${unviewed}) ` : ""}${titles[view]} – call journal`;
    }, [view, unviewed]);

    if (signedOut) {
        return <SignIn />;
    }
    return (
        <div class="frame">
            <Header />
            <Navigation view={view} />
            <main class="main" tabIndex={-1} aria-label={titles[view]} data-test={`view-${view}`}>
                <Notices />
                {isList(view) && <ListView key={view} list={view} />}
                {view === "calls" && <CallsView />}
                {view === "contacts" && <ContactsView />}
                {view === "times" && <TimesView />}
                {view === "settings" && <SettingsView />}
            </main>
            <UndoBar />
            <p class="visually-hidden" role="status" data-test="news">
                {/* A screen reader does not speak the same text twice. */}
                {announcement.text}
                {announcement.count % 2 === 0 ? "" : "\u00a0"}
            </p>
        </div>
    );
}
