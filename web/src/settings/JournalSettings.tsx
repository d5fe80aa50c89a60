import { useRef, useState } from "preact/hooks";
import { ApiError } from "../api/request";
import { ConfirmDialog } from "../frame/Dialog";
import { reasonOf } from "../state/failures";
import { changeSetting, readSettings, settings } from "../state/settings";
import { t } from "../text/language";
import { Switch } from "./Switch";

const rows = [
    { key: "call-log-enabled", name: "keep", on: "true", off: "false" },
    { key: "missed-logging", name: "elsewhere", on: "0", off: "1" },
    { key: "delete-missed-when-called", name: "tidy", on: "1", off: "0" },
] as const;
type Row = (typeof rows)[number];

/** The text of a refusal, with the reason. */
function explained(error: unknown, key: string): string {
    const rejection = error instanceof ApiError ? error.rejected[key] : undefined;
    return rejection ? t().settings.refused(rejection.text) : t().settings.notChanged(reasonOf(error));
}

/** The settings that rule which calls are kept. */
export function JournalSettings() {
    const [refusals, setRefusals] = useState<Record<string, string>>({});
    const [asking, setAsking] = useState<Row>();
    const changing = useRef(new Set<string>());
    const texts = t().settings;
    const values = settings.value;

    const change = async (row: Row, on: boolean) => {
        // A second press while the first one is pending would repeat it.
        if (changing.current.has(row.key)) {
            return;
        }
        changing.current.add(row.key);
        try {
            await changeSetting(row.key, on ? row.on : row.off);
            setRefusals({});
        } catch (error) {
            setRefusals({ [row.key]: explained(error, row.key) });
            await readSettings();
        }
        changing.current.delete(row.key);
    };
    return (
        <>
            {!values && <p>{t().reading}</p>}
            {values &&
                rows.map((row) => (
                    <Switch
                        key={row.key}
                        name={row.key}
                        title={texts[row.name]}
                        text={texts[`${row.name}Text`]}
                        isOn={values[row.key] === row.on}
                        refusal={refusals[row.key]}
                        onChange={(on) => (row.name === "keep" && !on ? setAsking(row) : void change(row, on))}
                    />
                ))}
            {asking && (
                <ConfirmDialog title={texts.keepTitle} action={texts.keepOff} isDangerous onConfirm={() => void change(asking, false)} onClose={() => setAsking(undefined)}>
                    {texts.keepWarning}
                </ConfirmDialog>
            )}
        </>
    );
}
