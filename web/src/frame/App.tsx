import type { FunctionComponent } from "preact";
import { useEffect, useState } from "preact/hooks";
import { CallsView } from "../calls/CallsView";
import { ContactsView } from "../contacts/ContactsView";
import { EmergencyDialog } from "../dial/EmergencyDialog";
import { LiveCalls } from "../live/LiveCalls";
import { SettingsView } from "../settings/SettingsView";
import { signedOut } from "../state/failures";
import { ringing } from "../state/live";
import { announcement, missedInBackground } from "../state/news";
import { view } from "../state/route";
import { unseen } from "../state/unseen";
import { t } from "../text/language";
import { titleOf } from "../text/people";
import { LineChoice } from "./LineChoice";
import { Navigation } from "./Navigation";
import { Notices } from "./Notices";
import { SignIn } from "./SignIn";
import { UndoBar } from "./UndoBar";
import { isWide } from "./width";

/** "(2) Missed call from Ann – Call journal": the number of new missed calls, and what happens now or happened in the background. */
function title(): string {
    const count = unseen.value.size;
    const caller = ringing.value;
    const now = caller ? t().live.title(titleOf(caller)) : (missedInBackground.value ?? t().views[view.value]);
    return `${count > 0 ? `(${count}) ` : ""}${now} – ${t().name}`;
}

/** Speaks the news to screen readers, which do not speak the same text twice. */
function News() {
    const { text, count } = announcement.value;
    return (
        <p class="visually-hidden" role="status" data-test="news">
            {text}
            {count % 2 === 0 ? "" : "\u00a0"}
        </p>
    );
}

/** Its library for pictures is loaded when the view is opened first. */
function Statistics() {
    const [view, setView] = useState<{ View: FunctionComponent }>();
    useEffect(() => void import("../statistics/StatisticsView").then(({ StatisticsView }) => setView({ View: StatisticsView })), []);
    return view ? <view.View /> : null;
}

export function App() {
    const text = title();
    useEffect(() => {
        document.title = text;
    }, [text]);
    if (signedOut.value) {
        return <SignIn />;
    }
    return (
        <div class="frame">
            <Navigation />
            <main class="main" tabIndex={-1} aria-label={t().views[view.value]} data-test={`view-${view.value}`}>
                <Notices />
                <LiveCalls />
                {!isWide.value && <LineChoice />}
                {view.value === "calls" && <CallsView />}
                {view.value === "contacts" && <ContactsView />}
                {view.value === "statistics" && <Statistics />}
                {view.value === "settings" && <SettingsView />}
                <UndoBar />
            </main>
            <EmergencyDialog />
            <News />
        </div>
    );
}
