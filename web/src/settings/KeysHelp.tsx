import { t } from "../text/language";

export function KeysHelp() {
    return (
        <details class="setting" data-test="keys">
            <summary>{t().settings.keys}</summary>
            <dl class="keys">
                {t().keys.map(([key, does]) => (
                    <div key={key}>
                        <dt>
                            <kbd>{key}</kbd>
                        </dt>
                        <dd>{does}</dd>
                    </div>
                ))}
            </dl>
        </details>
    );
}
