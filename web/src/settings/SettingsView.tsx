import { report, succeeded } from "../state/failures";
import { signOut } from "../state/connection";
import { mayManage } from "../state/rights";
import { t } from "../text/language";
import { Advanced } from "./Advanced";
import { JournalSettings } from "./JournalSettings";
import { KeysHelp } from "./KeysHelp";
import { PageSettings } from "./PageSettings";

export function SettingsView() {
    const texts = t().settings;
    const leave = () =>
        signOut().then(
            () => succeeded("sign out"),
            (error: unknown) => report("sign out", () => t().errors.signOut, error),
        );
    return (
        <div class="view">
            <div class="view-column">
                <h2 class="view-title">{texts.title}</h2>
                {mayManage.value && (
                    <section class="card" aria-labelledby="settings-journal">
                        <h3 id="settings-journal">{texts.journal}</h3>
                        <JournalSettings />
                    </section>
                )}
                <section class="card" aria-labelledby="settings-page">
                    <h3 id="settings-page">{texts.page}</h3>
                    <PageSettings />
                    <KeysHelp />
                </section>
                <section class="card" aria-labelledby="settings-access">
                    <h3 id="settings-access">{texts.about}</h3>
                    <div class="setting">
                        <p>{texts.signOutText}</p>
                        <button type="button" data-test="sign-out" onClick={() => void leave()}>
                            {texts.signOut}
                        </button>
                    </div>
                </section>
                {mayManage.value && (
                    <section class="card advanced">
                        <Advanced />
                    </section>
                )}
            </div>
        </div>
    );
}
