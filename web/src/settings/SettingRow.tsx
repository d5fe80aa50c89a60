export interface Setting {
    key: string;
    title: string;
    text: string;
    on: string;
    off: string;
    /** The question before the setting is switched off. */
    offWarning?: string;
}

interface Props {
    setting: Setting;
    value: string | undefined;
    refusal: string | undefined;
    onChange: (on: boolean) => void;
}

export function SettingRow({ setting, value, refusal, onChange }: Props) {
    return (
        <div class="setting">
            <label>
                <input
                    type="checkbox"
                    role="switch"
                    data-test={setting.key}
                    checked={value === setting.on}
                    aria-describedby={`${setting.key}-text`}
                    onChange={(event) => {
                        const on = event.currentTarget.checked;
                        // The switch stays until the journal has accepted the value.
                        event.currentTarget.checked = value === setting.on;
                        onChange(on);
                    }}
                />
                {setting.title}
            </label>
            <p id={`${setting.key}-text`}>{setting.text}</p>
            <p class="refusal" role="alert">
                {refusal}
            </p>
        </div>
    );
}
