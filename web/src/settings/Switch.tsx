interface Props {
    name: string;
    title: string;
    text: string;
    isOn: boolean;
    refusal?: string | undefined;
    onChange: (on: boolean) => void;
}

/** A switch with its explanation. It shows the stored value until the change is accepted. */
export function Switch({ name, title, text, isOn, refusal, onChange }: Props) {
    return (
        <div class="setting">
            <label class="switch">
                <span>{title}</span>
                <input
                    type="checkbox"
                    role="switch"
                    data-test={name}
                    checked={isOn}
                    aria-describedby={`${name}-text`}
                    onChange={(event) => {
                        const on = event.currentTarget.checked;
                        event.currentTarget.checked = isOn;
                        onChange(on);
                    }}
                />
            </label>
            <p id={`${name}-text`}>{text}</p>
            <p class="refusal" role="alert">
                {refusal}
            </p>
        </div>
    );
}
