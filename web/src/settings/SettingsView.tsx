import { useEffect, useState } from "preact/hooks";
import { api, ApiError } from "../api/client";
import { journal } from "../state/app";
import { SettingRow, type Setting } from "./SettingRow";

const settings: Setting[] = [
    {
        key: "call-log-enabled",
        title: "Keep a call journal",
        text: "Off, no call is filed any more, and all lists are emptied at once.",
        on: "true",
        off: "false",
        offWarning: "This empties all five lists now and cannot be undone. Switch the journal off?",
    },
    { key: "missed-logging", title: "File missed calls", text: "Off, calls that nobody answers leave no entry.", on: "0", off: "1" },
    {
        key: "delete-missed-when-called",
        title: "Tidy up missed calls",
        text: "On, the newest missed entry of a caller goes when a call to that caller is answered.",
        on: "1",
        off: "0",
    },
];

/** Why the journal refused, and what to do about it. */
function explained(error: unknown, key: string): string {
    const rejection = error instanceof ApiError ? error.rejected[key] : undefined;
    if (rejection?.code === 10) {
        return `Somebody else has set this already; the page shows the present value now. (${rejection.text})`;
    }
    if (rejection) {
        return `The journal does not take this value: ${rejection.text}`;
    }
    return `Not changed: ${(error as Error).message}`;
}

export function SettingsView() {
    const [values, setValues] = useState<Record<string, string>>();
    const [refusals, setRefusals] = useState<Record<string, string>>({});
    const read = () =>
        api.settings().then(
            (answer) => setValues(answer),
            (error: unknown) => journal.fail(error),
        );
    useEffect(() => void read(), []);

    const change = async (setting: Setting, on: boolean) => {
        try {
            setValues(await api.changeSetting(setting.key, on ? setting.on : setting.off));
            setRefusals({});
        } catch (error) {
            setRefusals({ [setting.key]: explained(error, setting.key) });
            await read();
        }
    };
    return (
        <div class="view">
            <h2>Settings</h2>
            {!values && <p class="empty">Reading the settings …</p>}
            {values &&
                settings.map((setting) => (
                    <SettingRow
                        key={setting.key}
                        setting={setting}
                        value={values[setting.key]}
                        refusal={refusals[setting.key]}
                        onChange={(on) => void change(setting, on)}
                    />
                ))}
        </div>
    );
}
