import type { Entry } from "../api/types";
import { plural } from "../text/names";

interface Props {
    search: string;
    onSearch: (text: string) => void;
    found: readonly Entry[];
    chosen: readonly Entry[];
    onDelete: (entries: readonly Entry[]) => void;
}

/** Search, and delete what is selected or all that the search finds. */
export function ListTools({ search, onSearch, found, chosen, onDelete }: Props) {
    const several = chosen.length > 0;
    const all = search.trim() ? `Delete the ${found.length.toLocaleString()} found` : "Delete all";
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
            <button
                type="button"
                disabled={found.length === 0}
                data-test="delete-several"
                onClick={() => onDelete(several ? chosen : found)}
            >
                {several ? `Delete ${plural(chosen.length, "entry", "entries")}` : all}
            </button>
        </div>
    );
}
