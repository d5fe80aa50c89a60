import { useEffect, useRef, useState } from "preact/hooks";
import { Icon } from "../frame/Icon";
import { filterCount, showsRequests } from "../state/filters";
import { mayWrite } from "../state/rights";
import { parameter, setParameters } from "../state/route";
import { t } from "../text/language";
import { isoDay } from "../text/times";
import { endSelecting, isSelecting } from "./shown";

const typingPause = 250;

/** The search stands in the address shortly after the user has stopped typing. */
function SearchField() {
    const inAddress = parameter("search") ?? "";
    const [text, setText] = useState(inAddress);
    const input = useRef<HTMLInputElement>(null);
    const sent = useRef(inAddress);
    useEffect(() => {
        if (inAddress !== sent.current) {
            sent.current = inAddress;
            setText(inAddress); // a link, or the filters were cleared
        }
    }, [inAddress]);
    useEffect(() => {
        const timer = window.setTimeout(() => {
            if (text.trim() !== sent.current) {
                sent.current = text.trim();
                setParameters({ search: text.trim(), at: undefined });
            }
        }, typingPause);
        return () => window.clearTimeout(timer);
    }, [text]);
    useEffect(() => {
        const press = (event: KeyboardEvent) => {
            const isTyping = event.target instanceof HTMLElement && event.target.matches("input:not([type=checkbox]), textarea, select");
            if (event.key === "/" && !isTyping && !document.querySelector("dialog[open]")) {
                event.preventDefault();
                input.current?.focus();
            }
        };
        window.addEventListener("keydown", press);
        return () => window.removeEventListener("keydown", press);
    }, []);
    return (
        <div class="search">
            <Icon name="search" />
            <input
                ref={input}
                type="search"
                aria-label={t().find.search}
                aria-keyshortcuts="/"
                placeholder={t().find.placeholder}
                autocomplete="off"
                value={text}
                data-test="search"
                onInput={(event) => setText(event.currentTarget.value)}
            />
            {text && (
                <button type="button" class="icon-button small-button" aria-label={t().find.clear} title={t().find.clear} onClick={() => setText("")}>
                    <Icon name="close" />
                </button>
            )}
        </div>
    );
}

/** Opens the browser's calendar; the chosen day stands in the address. */
function DateJump() {
    const input = useRef<HTMLInputElement>(null);
    const label = t().find.toDate;
    return (
        <span class="date-jump">
            <button type="button" class="icon-button" data-test="jump" aria-label={label} title={label} onClick={() => input.current?.showPicker?.()}>
                <Icon name="calendar" />
            </button>
            <input
                ref={input}
                type="date"
                tabIndex={-1}
                aria-hidden="true"
                max={isoDay(new Date())}
                value={parameter("at") ?? ""}
                data-test="jump-date"
                onChange={(event) => setParameters({ at: event.currentTarget.value })}
            />
        </span>
    );
}

interface Props {
    filtersOpen: boolean;
    onFilters: () => void;
}

/** Search and the buttons beside it. */
export function SearchBar({ filtersOpen, onFilters }: Props) {
    const texts = t().find;
    const count = filterCount.value;
    return (
        <div class="search-bar" role="search">
            <SearchField />
            {!showsRequests.value && (
                <>
                    <button
                        type="button"
                        class="icon-button"
                        data-test="filters"
                        aria-expanded={filtersOpen}
                        aria-label={count > 0 ? texts.filtersOn(count) : texts.filters}
                        title={texts.filters}
                        onClick={onFilters}
                    >
                        <Icon name="filter" />
                        {count > 0 && <span class="badge">{count}</span>}
                    </button>
                    <DateJump />
                </>
            )}
            {!showsRequests.value && mayWrite.value && (
                <button
                    type="button"
                    class="icon-button"
                    data-test="select"
                    aria-pressed={isSelecting.value}
                    aria-label={texts.select}
                    title={texts.select}
                    onClick={() => (isSelecting.value ? endSelecting() : (isSelecting.value = true))}
                >
                    <Icon name="select" />
                </button>
            )}
        </div>
    );
}
