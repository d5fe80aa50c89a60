import type { Change, Entry } from "../api/types";

export const actions = { added: 0, updated: 1, deleted: 2, changed: 3, emptied: 4 } as const;

/** A key that stays the same while the entry exists. */
export function keyOf(entry: Entry): string {
    return entry.uniqueId || entry.entryId;
}

/** Returns the list after the change, newest first; null if the list must be read again. */
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
    const position = older < 0 ? others.length : older;
    return [...others.slice(0, position), item, ...others.slice(position)];
}

export function withViewed(list: readonly Entry[], entryIds: readonly string[], viewed: boolean): Entry[] {
    const wanted = new Set(entryIds);
    return list.map((each) => (wanted.has(each.entryId) ? { ...each, viewed } : each));
}
