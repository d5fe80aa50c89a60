import { plural } from "../text/names";

interface Props {
    search: string;
    onSearch: (text: string) => void;
    /** The number of entries found, and of those selected. */
    found: number;
    chosen: number;
    /** Deletes the selected entries; if there are none, all that are found. */
    onDelete: () => void;
}

/** The search field, and the button that deletes the selected or all found entries. */
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
