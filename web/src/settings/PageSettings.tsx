import { useState } from "preact/hooks";
import { notifies, setNotifies } from "../state/news";
import { chooseLanguage, language, languages, t, type Language } from "../text/language";
import { Switch } from "./Switch";

/** The settings of this browser: language and notifications. */
export function PageSettings() {
    const [isBlocked, setBlocked] = useState(false);
    const texts = t().settings;
    return (
        <>
            <div class="setting">
                <label class="switch">
                    <span>{texts.language}</span>
                    <select data-test="language" value={language.value} onChange={(event) => chooseLanguage(event.currentTarget.value as Language)}>
                        {Object.entries(languages).map(([name, text]) => (
                            <option key={name} value={name} lang={name}>
                                {text}
                            </option>
                        ))}
                    </select>
                </label>
                <p>{texts.languageText}</p>
            </div>
            <Switch
                name="notifications"
                title={texts.notifications}
                text={texts.notificationsText}
                isOn={notifies.value}
                refusal={isBlocked ? texts.notificationsBlocked : undefined}
                onChange={(on) => void setNotifies(on).then((allowed) => setBlocked(!allowed))}
            />
        </>
    );
}
