import type { Change, Entry } from "../api/types";

export const actions = { added: 0, updated: 1, deleted: 2, changed: 3, emptied: 4 } as const;

/** What stays the same as long as the entry lives. */
export function keyOf(entry: Entry): string {
    return entry.uniqueId || entry.entryId;
}

/** The list after the change, newest first; null when the change does not say enough and the list has to be read. */
export function applied(list: Entry[], { action, entryId, item }: Change): Entry[] | null {
    if (action === actions.emptied) {
        return [];
    }
    if (action === actions.deleted && entryId) {
        return list.filter((each) => keyOf(each) !== entryId);
    }
    if ((action !== actions.added && action !== actions.updated) || !item?.uniqueId) {
        return null;
    }
    const others = list.filter((each) => keyOf(each) !== item.uniqueId && keyOf(each) !== entryId);
    const older = others.findIndex((each) => each.time <= item.time);
    const place = older < 0 ? others.length : older;
    return [...others.slice(0, place), item, ...others.slice(place)];
}
