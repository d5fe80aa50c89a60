import { useRef, useState } from "preact/hooks";
import { ApiError } from "../api/client";
import { settings } from "../state/app";
import { reasonOf } from "../state/Failures";
import { useStore } from "../state/Store";
import { KeysHelp } from "./KeysHelp";
import { SettingRow, type Setting } from "./SettingRow";

const rows: Setting[] = [
    {
        key: "call-log-enabled",
        title: "Keep a call journal",
        text: "Switching it off empties the four lists of calls at once; the callbacks stay. A SIP phone then files no calls, a Qorvex phone continues.",
        on: "true",
        off: "false",
        offWarning: "This empties the lists of missed, dialled, received and forwarded calls now and cannot be undone. Switch the journal off?",
    },
    {
        key: "missed-logging",
        title: "File calls answered elsewhere",
        text: "If on, a call that rang here and was answered on another phone of yours is filed as missed, too. Calls that are not answered are always filed.",
        on: "0",
        off: "1",
    },
    {
        key: "delete-missed-when-called",
        title: "Tidy up missed calls",
        text: "If on, the newest missed entry of a caller is deleted when a call to that caller is answered.",
        on: "1",
        off: "0",
    },
];

/** The text of a refusal, with advice. */
function explained(error: unknown, key: string): string {
    const rejection = error instanceof ApiError ? error.rejected[key] : undefined;
    if (rejection) {
        return `The journal does not accept this value: ${rejection.text}`;
    }
    return `Not changed: ${reasonOf(error)}`;
}

export function SettingsView() {
    const { values } = useStore(settings);
    const [refusals, setRefusals] = useState<Record<string, string>>({});

    const changing = useRef(new Set<string>());

    const change = async (setting: Setting, on: boolean) => {
        // A second press while the first one is pending would repeat it.
        if (changing.current.has(setting.key) || (!on && setting.offWarning && !window.confirm(setting.offWarning))) {
            return;
        }
        changing.current.add(setting.key);
        try {
            await settings.change(setting.key, on ? setting.on : setting.off);
            setRefusals({});
        } catch (error) {
            setRefusals({ [setting.key]: explained(error, setting.key) });
            await settings.read();
        }
        changing.current.delete(setting.key);
    };
    return (
        <div class="view">
            <h2>Settings</h2>
            {!values && <p class="empty">Reading the settings …</p>}
            {values &&
                rows.map((setting) => (
                    <SettingRow
                        key={setting.key}
                        setting={setting}
                        value={values[setting.key]}
                        refusal={refusals[setting.key]}
                        onChange={(on) => void change(setting, on)}
                    />
                ))}
            <KeysHelp />
        </div>
    );
}
