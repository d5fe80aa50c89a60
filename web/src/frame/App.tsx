import { useEffect } from "preact/hooks";
import { ContactsView } from "../contacts/ContactsView";
import { ListView } from "../list/ListView";
import { TimesView } from "../picture/TimesView";
import { SettingsView } from "../settings/SettingsView";
import { journal } from "../state/app";
import { isList, titles, useView } from "../state/route";
import { useStore } from "../state/Store";
import { Header } from "./Header";
import { Navigation } from "./Navigation";
import { Notices } from "./Notices";
import { SignIn } from "./SignIn";
import { UndoBar } from "./UndoBar";

export function App() {
    const view = useView();
    const { signedOut, news } = useStore(journal);
    const unviewed = journal.unviewed();

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
            <main class="main" aria-label={titles[view]} data-test={`view-${view}`}>
                <Notices />
                {isList(view) && <ListView key={view} list={view} />}
                {view === "contacts" && <ContactsView />}
                {view === "times" && <TimesView />}
                {view === "settings" && <SettingsView />}
            </main>
            <UndoBar />
            <p class="only-heard" role="status">
                {news}
            </p>
        </div>
    );
}
