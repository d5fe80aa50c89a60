import type { Call } from "../api/types";
import { dayStart } from "../text/times";
import { outcomeOf, type Outcome } from "./outcome";

/** Calls of one party with the same outcome that follow each other on one day, the newest first. */
export interface Group {
    kind: "group";
    key: string;
    calls: readonly [Call, ...Call[]];
    outcome: Outcome;
    isExpanded: boolean;
}

export type Row =
    | Group
    | { kind: "day"; key: string; day: Date }
    /** One call of the group above, which is expanded. */
    | { kind: "single"; key: string; call: Call; group: Group }
    | { kind: "older"; key: string };

/** Identifies the party of a call; calls without a number are told apart by the name. */
export function partyKey(call: Call): string {
    return call.number || `/${call.displayName}`;
}

/** Returns the begin of the day of a time; remembers the latest day, since most calls are of the same day as the one before. */
function dayFinder(): (time: string) => Date {
    let [from, to] = [0, 0];
    return (time) => {
        const moment = Date.parse(time);
        if (moment < from || moment >= to) {
            const day = dayStart(new Date(moment));
            [from, to] = [day.getTime(), dayStart(day, 1).getTime()];
        }
        return new Date(from);
    };
}

interface Options {
    isHidden: (id: number) => boolean;
    /** The keys of the groups that are expanded. */
    expanded: ReadonlySet<string>;
    hasOlder: boolean;
}

/** The rows of the list. The key of a group is that of its oldest call, so it stays when further calls come. */
export function rowsOf(calls: readonly Call[], { isHidden, expanded, hasOlder }: Options): Row[] {
    const rows: Row[] = [];
    const dayOf = dayFinder();
    let day = -1;
    let [party, outcome] = ["", ""];
    let group: Call[] = [];
    const close = () => {
        const [first, ...others] = group;
        const last = group[group.length - 1];
        if (!first || !last) {
            return;
        }
        const key = `g${last.id}`;
        const isExpanded = others.length > 0 && expanded.has(key);
        const row: Group = { kind: "group", key, calls: [first, ...others], outcome: outcomeOf(first), isExpanded };
        rows.push(row);
        if (isExpanded) {
            rows.push(...group.map((call) => ({ kind: "single" as const, key: `c${call.id}`, call, group: row })));
        }
        group = [];
    };
    for (const call of calls) {
        if (isHidden(call.id)) {
            continue;
        }
        const began = dayOf(call.start);
        const [nextParty, nextOutcome] = [partyKey(call), outcomeOf(call)];
        if (began.getTime() !== day || nextParty !== party || nextOutcome !== outcome) {
            close();
            [party, outcome] = [nextParty, nextOutcome];
        }
        if (began.getTime() !== day) {
            day = began.getTime();
            rows.push({ kind: "day", key: `d${day}`, day: began });
        }
        group.push(call);
    }
    close();
    if (hasOlder) {
        rows.push({ kind: "older", key: "older" });
    }
    return rows;
}
