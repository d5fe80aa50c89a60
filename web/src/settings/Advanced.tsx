import { useEffect, useState } from "preact/hooks";
import { api } from "../api/client";
import type { ManagedSetting } from "../api/types";
import { reasonOf, reportOnce } from "../state/failures";
import { t } from "../text/language";

/** Facts about the telephone, which cannot be changed here. */
const facts = ["mac-addr", "software-type"];

function Row({ setting: { key, value }, onChanged }: { setting: ManagedSetting; onChanged: () => void }) {
    const [text, setText] = useState(value ?? "");
    const [refusal, setRefusal] = useState("");
    const texts = t().settings;
    useEffect(() => setText(value ?? ""), [value]);
    const store = async () => {
        try {
            await api.changeManagedSetting(key, text);
            setRefusal("");
            onChanged();
        } catch (error) {
            setRefusal(texts.notChanged(reasonOf(error)));
        }
    };
    return (
        <li>
            <form
                class="phone-setting"
                onSubmit={(event) => {
                    event.preventDefault();
                    void store();
                }}
            >
                <label>
                    <code>{key}</code>
                    <input
                        type="text"
                        aria-label={texts.value(key)}
                        autocomplete="off"
                        placeholder={texts.notSet}
                        value={text}
                        data-test={`phone-${key}`}
                        onInput={(event) => setText(event.currentTarget.value)}
                    />
                </label>
                <button type="submit" disabled={text === (value ?? "")} aria-label={`${texts.set} ${key}`}>
                    {texts.set}
                </button>
            </form>
            <p class="refusal" role="alert">
                {refusal}
            </p>
        </li>
    );
}

/** The settings of the telephone, by the names that its manual has. They are read when they are shown. */
export function Advanced() {
    const [found, setFound] = useState<ManagedSetting[]>();
    const texts = t().settings;
    const read = () =>
        api.managedSettings().then(
            (all) => setFound(all.filter((each) => each.of === "phone")),
            (error: unknown) => reportOnce("phone settings", () => t().errors.settings, error),
        );
    return (
        <details class="setting" data-test="advanced" onToggle={(event) => event.currentTarget.open && void read()}>
            <summary>{texts.advanced}</summary>
            <p>{texts.advancedText}</p>
            <ul class="phone-settings">{found?.map((setting) =>
                facts.includes(setting.key) ? (
                    <li key={setting.key} class="phone-fact">
                        <code>{setting.key}</code> {setting.value || texts.notSet}
                    </li>
                ) : (
                    <Row key={setting.key} setting={setting} onChanged={() => void read()} />
                ),
            )}</ul>
        </details>
    );
}
