import { useState } from "preact/hooks";
import type { Entry, ListName } from "../api/types";
import { deletions, journal, route, shownEntries } from "../state/app";
import { keyOf } from "../state/entries";
import { listLabel } from "../state/route";
import { useStore } from "../state/Store";
import { plural } from "../text/names";
import { matcher } from "../text/search";
import { EmptyList } from "./EmptyList";
import { EntryDetails } from "./EntryDetails";
import { EntryList } from "./EntryList";
import { ListTools } from "./ListTools";

/** One of the five lists with its search and selection. */
export function ListView({ list }: { list: ListName }) {
    useStore(journal);
    useStore(deletions);
    const [search, setSearch] = useState("");
    const [selected, setSelected] = useState<ReadonlySet<string>>(new Set());
    const { openKey } = useStore(route);

    const entries = shownEntries(list);
    const found = search.trim() ? entries.filter(matcher(search)) : entries;
    const chosen = found.filter((each) => selected.has(keyOf(each)));
    const open = entries.find((each) => keyOf(each) === openKey);

    const remove = (gone: readonly Entry[], whole = false) => {
        deletions.add(
            list,
            gone.map((each) => each.entryId),
            whole,
        );
        setSelected(new Set());
        if (open && gone.includes(open)) {
            route.closeEntry();
        }
    };
    const removeSeveral = () => (chosen.length > 0 ? remove(chosen) : remove(found, !search.trim()));
    const select = (entry: Entry, on: boolean) => {
        const next = new Set(selected);
        next[on ? "add" : "delete"](keyOf(entry));
        setSelected(next);
    };

    return (
        <div class={open ? "list-view list-view-open" : "list-view"}>
            <section class="list-side" aria-label={listLabel(list)}>
                <ListTools search={search} onSearch={setSearch} found={found.length} chosen={chosen.length} onDelete={removeSeveral} />
                <p class="visually-hidden" role="status">
                    {search.trim() && `${plural(found.length, "entry", "entries")} found`}
                </p>
                {found.length > 0 ? (
                    <EntryList
                        list={list}
                        entries={found}
                        selected={selected}
                        openKey={open && keyOf(open)}
                        onSelect={select}
                        onOpen={(entry) => route.openEntry(keyOf(entry))}
                        onDelete={(entry) => remove([entry])}
                    />
                ) : (
                    <EmptyList list={list} search={search} read={journal.isRead(list)} onClear={() => setSearch("")} />
                )}
            </section>
            {open && <EntryDetails key={keyOf(open)} list={list} entry={open} onClose={() => route.closeEntry()} onDelete={() => remove([open])} />}
        </div>
    );
}
