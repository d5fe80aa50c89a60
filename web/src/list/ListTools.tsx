import { plural } from "../text/names";

interface Props {
    search: string;
    onSearch: (text: string) => void;
    /** How many entries are found, and how many of them are selected. */
    found: number;
    chosen: number;
    /** Deletes those that are selected, else those that are found. */
    onDelete: () => void;
}

/** Search, and delete what is selected or all that the search finds. */
export function ListTools({ search, onSearch, found, chosen, onDelete }: Props) {
    const all = search.trim() ? `Delete the ${found.toLocaleString()} found` : "Delete all";
    return (
        <div class="tools" role="search">
            <input
                type="search"
                aria-label="Search names and numbers"
                placeholder="Name or number"
                value={search}
                data-test="search"
                onInput={(event) => onSearch(event.currentTarget.value)}
            />
            <button type="button" disabled={found === 0} data-test="delete-several" onClick={onDelete}>
                {chosen > 0 ? `Delete ${plural(chosen, "entry", "entries")}` : all}
            </button>
        </div>
    );
}
