import { computed, signal } from "@preact/signals";
import type { Call } from "../api/types";
import { hiddenCalls } from "../state/deletions";
import { mainFeed } from "../state/feeds";
import { rowsOf, type Group } from "./rows";
import { mayWrite } from "../state/rights";

const expanded = signal<ReadonlySet<string>>(new Set());

/** The newest name that the switch has told for each number. */
const toldNames = computed(() => {
    const names = new Map<string, string>();
    for (const { number, displayName } of mainFeed.calls.value) {
        if (number && displayName && !names.has(number)) {
            names.set(number, displayName);
        }
    }
    return names;
});

/** The calls of the main view; a dialled call, for which the switch tells no name, has the name that it told at another call. */
const namedCalls = computed(() => {
    const names = toldNames.value;
    return mainFeed.calls.value.map((call) => {
        const name = call.displayName ? undefined : names.get(call.number);
        return name ? { ...call, displayName: name } : call;
    });
});

/** The rows of the main view. */
export const rows = computed(() =>
    rowsOf(namedCalls.value, {
        isHidden: hiddenCalls(),
        expanded: expanded.value,
        hasOlder: mainFeed.hasOlder.value,
    }),
);

export function setExpanded(group: Group, on: boolean): void {
    const keys = new Set(expanded.value);
    if (on) {
        keys.add(group.key);
    } else {
        keys.delete(group.key);
    }
    expanded.value = keys;
}

/** True while the rows have boxes to select them with. */
export const isSelecting = signal(false);
const selected = signal<ReadonlySet<number>>(new Set());

/** The shown calls that are selected. */
export const selection = computed<readonly Call[]>(() => {
    const ids = selected.value;
    const isHidden = hiddenCalls();
    return ids.size === 0 ? [] : mainFeed.calls.value.filter(({ id }) => ids.has(id) && !isHidden(id));
});

export function isSelected(group: Group): boolean {
    return group.calls.every(({ id }) => selected.value.has(id));
}

export function select(calls: readonly Call[], on: boolean): void {
    if (!mayWrite.value) {
        return;
    }
    const ids = new Set(selected.value);
    calls.forEach(({ id }) => (on ? ids.add(id) : ids.delete(id)));
    selected.value = ids;
    isSelecting.value = true;
}

export function selectAll(): void {
    const isHidden = hiddenCalls();
    select(mainFeed.calls.value.filter(({ id }) => !isHidden(id)), true);
}

export function endSelecting(): void {
    isSelecting.value = false;
    selected.value = new Set();
}
