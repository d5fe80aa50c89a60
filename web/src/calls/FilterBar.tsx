import type { ComponentChildren } from "preact";
import { useEffect, useState } from "preact/hooks";
import { route } from "../state/app";
import { filtersOf, queryOf, type CallFilters, type FilterName } from "../state/callFilters";

const typingPause = 300;

interface Field {
    name: FilterName;
    label: string;
    hint?: string;
    /** Values to choose from: pairs of value and text. Undefined for a text field. */
    options?: [string, string][];
}

const fields: Field[] = [
    { name: "since", label: "Since", hint: "7d, today, 2026-11-21" },
    { name: "until", label: "Until (not included)", hint: "today, 2026-12-01" },
    { name: "number", label: "Number", hint: "in any spelling" },
    {
        name: "list",
        label: "List",
        options: [
            ["missed", "Missed"],
            ["dialled", "Dialled"],
            ["received", "Received"],
            ["forwarded", "Forwarded"],
        ],
    },
    {
        name: "direction",
        label: "Direction",
        options: [
            ["incoming", "Incoming"],
            ["outgoing", "Outgoing"],
        ],
    },
    {
        name: "viewed",
        label: "Viewed",
        options: [
            ["true", "Viewed"],
            ["false", "New"],
        ],
    },
    { name: "min-duration", label: "Minimum duration", hint: "90, 1m30s" },
];

interface Props {
    query: string;
    refusal: string;
    children: ComponentChildren;
}

/** The filters of the calls. They stand in the address shortly after they were typed. `children` are further buttons. */
export function FilterBar({ query, refusal, children }: Props) {
    const [values, setValues] = useState<CallFilters>(() => filtersOf(query));
    const [isOpen, setOpen] = useState(false);
    useEffect(() => {
        // A link or the browser's Back has other filters.
        setValues((typed) => (queryOf(typed) === queryOf(filtersOf(query)) ? typed : filtersOf(query)));
        setOpen((open) => open || fields.some(({ name }) => filtersOf(query)[name]));
    }, [query]);
    useEffect(() => {
        const typed = queryOf(values);
        const timer = window.setTimeout(() => typed !== queryOf(filtersOf(route.query)) && route.setQuery(typed), typingPause);
        return () => window.clearTimeout(timer);
    }, [values]);

    const set = (name: FilterName, value: string) => setValues({ ...values, [name]: value });
    const count = fields.filter(({ name }) => values[name]).length;
    return (
        <div role="search">
            <div class="tools">
                <input
                    type="search"
                    aria-label="Search names and numbers"
                    placeholder="Name or number"
                    value={values.search ?? ""}
                    data-test="filter-search"
                    onInput={(event) => set("search", event.currentTarget.value)}
                />
                {children}
            </div>
            <details class="filters" open={isOpen} onToggle={(event) => setOpen(event.currentTarget.open)}>
                <summary data-test="filters">Filters{count > 0 && ` (${count} set)`}</summary>
                <div class="filter-fields">
                    {fields.map(({ name, label, hint, options }) => (
                        <label key={name}>
                            {label}
                            {options ? (
                                <select value={values[name] ?? ""} data-test={`filter-${name}`} onChange={(event) => set(name, event.currentTarget.value)}>
                                    <option value="">All</option>
                                    {options.map(([value, text]) => (
                                        <option key={value} value={value}>
                                            {text}
                                        </option>
                                    ))}
                                </select>
                            ) : (
                                <input
                                    type="text"
                                    autocomplete="off"
                                    placeholder={hint}
                                    value={values[name] ?? ""}
                                    data-test={`filter-${name}`}
                                    onInput={(event) => set(name, event.currentTarget.value)}
                                />
                            )}
                        </label>
                    ))}
                    <button type="button" disabled={queryOf(values) === ""} data-test="clear-filters" onClick={() => setValues({})}>
                        Clear filters
                    </button>
                </div>
            </details>
            <p class="refusal" role="alert" data-test="filter-refusal">
                {refusal && `This filter cannot be used: ${refusal}.`}
            </p>
        </div>
    );
}
