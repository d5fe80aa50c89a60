import { useRef, useState } from "preact/hooks";
import type { Entry, ListName } from "../api/types";
import { deletions, journal } from "../state/app";
import { keyOf } from "../state/entries";
import { titles } from "../state/route";
import { useStore } from "../state/Store";
import { plural } from "../text/names";
import { matcher } from "../text/search";
import { EmptyList } from "./EmptyList";
import { EntryDetails } from "./EntryDetails";
import { EntryList, type EntryListHandle } from "./EntryList";
import { ListTools } from "./ListTools";

/** One of the five lists: what is searched, selected and open in it. */
export function ListView({ list }: { list: ListName }) {
    useStore(journal);
    useStore(deletions);
    const [search, setSearch] = useState("");
    const [selected, setSelected] = useState<ReadonlySet<string>>(new Set());
    const [openKey, setOpenKey] = useState<string>();
    const rows = useRef<EntryListHandle>(null);

    const entries = journal.entries(list).filter((each) => !deletions.isHidden(list, each.entryId));
    const found = search.trim() ? entries.filter(matcher(search)) : entries;
    const chosen = found.filter((each) => selected.has(keyOf(each)));
    const open = entries.find((each) => keyOf(each) === openKey);

    const remove = (gone: readonly Entry[]) => {
        deletions.add(
            list,
            gone.map((each) => each.entryId),
        );
        setSelected(new Set());
        rows.current?.focusAfterRemoval();
    };
    const select = (entry: Entry, on: boolean) => {
        const next = new Set(selected);
        next[on ? "add" : "delete"](keyOf(entry));
        setSelected(next);
    };
    const show = (entry: Entry) => {
        if (entry.viewed === false) {
            journal.markViewed([entry.entryId]);
        }
        setOpenKey(keyOf(entry));
    };
    const close = () => {
        setOpenKey(undefined);
        rows.current?.focusActive();
    };

    return (
        <div class={open ? "list-view list-view-open" : "list-view"}>
            <section class="list-side" aria-label={`${titles[list]} calls`}>
                <ListTools search={search} onSearch={setSearch} found={found} chosen={chosen} onDelete={remove} />
                <p class="only-heard" role="status">
                    {search.trim() && `${plural(found.length, "entry", "entries")} found`}
                </p>
                {found.length > 0 ? (
                    <EntryList
                        handle={rows}
                        list={list}
                        entries={found}
                        selected={selected}
                        openKey={open && keyOf(open)}
                        onSelect={select}
                        onOpen={show}
                        onDelete={(entry) => remove([entry])}
                    />
                ) : (
                    <EmptyList list={list} search={search} read={journal.isRead(list)} onClear={() => setSearch("")} />
                )}
            </section>
            {open && <EntryDetails key={keyOf(open)} list={list} entry={open} onClose={close} onDelete={() => remove([open])} />}
        </div>
    );
}
