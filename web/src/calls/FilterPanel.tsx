import type { ComponentChildren } from "preact";
import { useState } from "preact/hooks";
import { clearFilters, filterCount, type FilterName } from "../state/filters";
import { parameter, setParameters } from "../state/route";
import { t } from "../text/language";
import { dayOf, durationText, isoDay, shortDay } from "../text/times";
import { badFilter } from "./badFilter";

const periods = ["today", "yesterday", "7d", "30d", "365d"] as const;
const lengths = ["30", "60", "300", "900", "3600"];

interface ChoiceProps {
    label: string;
    name: string;
    value: string;
    options: readonly (readonly [string, string])[];
    onChange: (value: string) => void;
}

function Choice({ label, name, value, options, onChange }: ChoiceProps) {
    return (
        <label>
            {label}
            <select value={value} data-test={`filter-${name}`} onChange={(event) => onChange(event.currentTarget.value)}>
                {options.map(([each, text]) => (
                    <option key={each} value={each}>
                        {text}
                    </option>
                ))}
            </select>
        </label>
    );
}

function set(changes: Partial<Record<FilterName, string | undefined>>): void {
    setParameters({ ...changes, at: undefined });
}

/** The period that the address has: one of `periods`, "custom", or "" for any time. */
function periodOf(since: string | undefined, until: string | undefined): string {
    const found = periods.find((each) => each === since);
    const isPlain = found === "yesterday" ? until === "yesterday" : !until;
    return !since && !until ? "" : found && isPlain ? found : "custom";
}

function Period() {
    const texts = t().find;
    const [since, until] = [parameter("since"), parameter("until")];
    const [isCustom, setCustom] = useState(false);
    const period = isCustom ? "custom" : periodOf(since, until);
    const choose = (value: string) => {
        setCustom(value === "custom");
        if (value === "custom") {
            set({ since: dayOf(since) ? since : isoDay(new Date(Date.now() - 7 * 86_400_000)), until: dayOf(until) && until });
        } else {
            set({ since: value, until: value === "yesterday" ? "yesterday" : undefined });
        }
    };
    const options: [string, string][] = [["", texts.anyTime], ...periods.map((each): [string, string] => [each, texts[each]]), ["custom", texts.custom]];
    const day = (name: "since" | "until", label: string, value: string | undefined) => (
        <label>
            {label}
            <input type="date" value={dayOf(value) ? value : ""} data-test={`filter-${name}`} onChange={(event) => set({ [name]: event.currentTarget.value })} />
        </label>
    );
    return (
        <>
            <Choice label={texts.time} name="time" value={period} options={options} onChange={choose} />
            {period === "custom" && day("since", texts.from, since)}
            {period === "custom" && day("until", texts.to, until)}
        </>
    );
}

/** The filters of the calls; they stand in the address. */
export function FilterPanel({ refusal }: { refusal: string }) {
    const texts = t().find;
    const chosen = parameter("min-duration") ?? "";
    const known = !chosen || lengths.includes(chosen) ? lengths : [...lengths, chosen];
    return (
        <div class="filter-panel" data-test="filter-panel">
            <Period />
            <Choice
                label={texts.direction}
                name="direction"
                value={parameter("direction") ?? ""}
                options={[["", texts.anyDirection], ["incoming", texts.incoming], ["outgoing", texts.outgoing]]}
                onChange={(direction) => set({ direction })}
            />
            <Choice
                label={texts.minimum}
                name="min-duration"
                value={chosen}
                options={[["", texts.anyLength], ...known.map((each): [string, string] => [each, texts.atLeast(Number(each) ? durationText(Number(each)) : each)])]}
                onChange={(length) => set({ "min-duration": length })}
            />
            <Choice
                label={texts.seen}
                name="viewed"
                value={parameter("viewed") ?? ""}
                options={[["", texts.anySeen], ["false", texts.onlyNew]]}
                onChange={(viewed) => set({ viewed })}
            />
            {filterCount.value > 0 && (
                <button type="button" data-test="clear-filters" onClick={clearFilters}>
                    {texts.clearAll}
                </button>
            )}
            <p class="refusal" role="alert" data-test="filter-refusal">
                {refusal && texts.refused(badFilter(refusal))}
            </p>
        </div>
    );
}

interface Chip extends Record<"text", string> {
    names: FilterName[];
}

function chips(): Chip[] {
    const texts = t().find;
    const [since, until, direction, length] = [parameter("since"), parameter("until"), parameter("direction"), parameter("min-duration")];
    const period = periods.find((each) => each === periodOf(since, until));
    const day = (label: string, value: string | undefined) => value && `${label} ${dayOf(value) ? shortDay(dayOf(value) as Date) : value}`;
    const time = period ? texts[period] : [day(texts.from, since), day(texts.to, until)].filter(Boolean).join(" ");
    const found: Chip[] = [
        { names: ["since", "until"], text: time },
        { names: ["direction"], text: direction === "incoming" || direction === "outgoing" ? texts[direction] : (direction ?? "") },
        { names: ["min-duration"], text: length ? texts.atLeast(Number(length) ? durationText(Number(length)) : length) : "" },
        { names: ["viewed"], text: parameter("viewed") === "false" ? texts.onlyNew : (parameter("viewed") ?? "") },
    ];
    return found.filter(({ text }) => text);
}

/** The filters that are set, each with a button that removes it. */
export function FilterChips({ children }: { children?: ComponentChildren }) {
    const shown = chips();
    return shown.length === 0 && !children ? null : (
        <div class="chips">
            {shown.map(({ names, text }) => (
                <button
                    key={names[0]}
                    type="button"
                    class="chip"
                    data-test="chip"
                    aria-label={t().find.remove(text)}
                    onClick={() => set(Object.fromEntries(names.map((name) => [name, undefined])))}
                >
                    {text} ×
                </button>
            ))}
            {children}
        </div>
    );
}
