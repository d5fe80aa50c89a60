import { api } from "../api/client";
import type { Call } from "../api/types";
import { t } from "../text/language";
import { report, reportOnce, succeeded } from "./failures";
import { feeds } from "./feeds";
import { mayWrite } from "./rights";

const storageKey = "calljournal.kept-new";
const keptCount = 500;

function restored(): [string, string][] {
    try {
        return Object.entries(JSON.parse(window.localStorage.getItem(storageKey) ?? "{}") as Record<string, string>);
    } catch {
        return [];
    }
}

/**
 * Entries that the user has marked as new, by unique id, with the newest call that they had. They stay new, also after a reload, until the
 * user marks them as seen or they get a further call.
 */
const keptNew = new Map<string, string>(restored());

/** Stores the latest ones in this browser. */
function storeKeptNew(): void {
    window.localStorage.setItem(storageKey, JSON.stringify(Object.fromEntries([...keptNew].slice(-keptCount))));
}

/** True if the call is one of a missed entry that the user has not seen. */
export function isNew(call: Call): boolean {
    return call.list === "missed" && !call.viewed && call.uniqueId !== null;
}

export function isKeptNew(call: Call): boolean {
    const newest = keptNew.get(call.uniqueId ?? "");
    return newest !== undefined && call.start <= newest;
}

function idsOf(calls: readonly Call[]): string[] {
    const missed = calls.filter((each) => each.list === "missed");
    return [...new Set(missed.map(({ uniqueId }) => uniqueId).filter((id) => id !== null))];
}

function setViewed(ids: readonly string[], viewed: boolean): void {
    const wanted = new Set(ids);
    feeds.forEach((feed) => feed.update((call) => (call.uniqueId !== null && wanted.has(call.uniqueId) ? { ...call, viewed } : call)));
}

/** Marks the entries of new calls as seen. `byUser`: also those that the user has marked as new. */
export function markSeen(calls: readonly Call[], byUser: boolean): void {
    const ids = idsOf(calls.filter((call) => isNew(call) && (byUser || !isKeptNew(call))));
    if (ids.length === 0 || !mayWrite.value) {
        return;
    }
    ids.forEach((id) => keptNew.delete(id));
    storeKeptNew();
    setViewed(ids, true);
    api.markSeen(ids).then(
        () => succeeded("seen"),
        (error: unknown) => {
            reportOnce("seen", () => t().errors.seen, error);
            feeds.forEach((feed) => feed.refreshSoon("newest"));
        },
    );
}

export function markNew(calls: readonly Call[]): void {
    const ids = idsOf(calls);
    if (ids.length === 0) {
        return;
    }
    for (const { uniqueId, start } of calls) {
        const known = keptNew.get(uniqueId ?? "");
        if (uniqueId !== null && (known === undefined || known < start)) {
            keptNew.set(uniqueId, start);
        }
    }
    storeKeptNew();
    setViewed(ids, false);
    api.markNew(ids).then(
        () => succeeded("new"),
        (error: unknown) => {
            report("new", () => t().errors.seen, error);
            feeds.forEach((feed) => feed.refreshSoon("newest"));
        },
    );
}
