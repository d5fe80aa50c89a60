import { chooseLine } from "../api/line";
import type { Line } from "../api/types";
import { status } from "../state/connection";
import { lineCount, lines } from "../state/lines";
import { t } from "../text/language";
import { numberText } from "../text/times";

function textOf({ device, name, unviewed }: Line): string {
    const line = name ? `${name} · ${device}` : t().line.of(device);
    return unviewed > 0 ? `${line} (${t().line.unviewed(unviewed)})` : line;
}

/** The choice among the lines that the access key may see, with their new missed calls. A single line has none. */
export function LineChoice() {
    const current = status.value?.line;
    if (lineCount.value < 2 || !current) {
        return null;
    }
    // Too many to look through are written, with suggestions.
    return (
        <label class="line-choice">
            <span class="visually-hidden">{t().line.choose(numberText(lineCount.value))}</span>
            {lineCount.value > lines.value.length ? (
                <>
                    <input
                        type="text"
                        list="lines"
                        data-test="line-choice"
                        defaultValue={current}
                        onChange={({ currentTarget }) => chooseLine(currentTarget.value.trim())}
                    />
                    <datalist id="lines">
                        {lines.value.map((line) => (
                            <option key={line.device} value={line.device}>
                                {textOf(line)}
                            </option>
                        ))}
                    </datalist>
                </>
            ) : (
                <select data-test="line-choice" value={current} onChange={({ currentTarget }) => chooseLine(currentTarget.value)}>
                    {lines.value.map((line) => (
                        <option key={line.device} value={line.device}>
                            {textOf(line)}
                        </option>
                    ))}
                </select>
            )}
        </label>
    );
}
