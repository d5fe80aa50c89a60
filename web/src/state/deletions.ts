import { signal } from "@preact/signals";
import { api } from "../api/client";
import { t } from "../text/language";
import { report, succeeded } from "./failures";
import { mainFeed, personFeed } from "./feeds";
import { mayWrite } from "./rights";

/** The kinds of things that can be deleted with undo. Calls have numbers as ids, written as texts. */
export type Scope = "calls" | "contacts" | "requests";

const undoTime = 7000;
/** If more deletions than this wait, the earlier ones are sent at once. */
const maxWaiting = 300;
/** Requests that are sent at the same time. */
const parallel = 6;

interface Item {
    scope: Scope;
    id: string;
}

const keyOf = ({ scope, id }: Item) => `${scope} ${id}`;

const requestOf: Record<Scope, (id: string) => Promise<void>> = {
    calls: (id) => api.deleteCall(Number(id), true),
    contacts: (id) => api.deleteContact(id, true),
    requests: (id) => api.deleteCallbackRequest(id, true),
};

/**
 * Deletions that the user can still undo, by key. What they delete is hidden at once; the request is sent when the time for undo is over
 * or the user leaves the page, and what the server refuses to delete is shown again.
 */
const waiting = signal<ReadonlyMap<string, Item>>(new Map());
/** Deletions whose request is under way or done; the server never uses an id again. */
const sent = signal<ReadonlySet<string>>(new Set());
/** The number of contacts that the server has deleted. */
export const contactsDeleted = signal(0);
let timer: number | undefined;

export function isHidden(scope: Scope, id: string): boolean {
    const key = `${scope} ${id}`;
    return waiting.value.has(key) || sent.value.has(key);
}

/** A function that tells whether a call is hidden; quicker than isHidden for many calls. */
export function hiddenCalls(): (id: number) => boolean {
    const [first, second] = [waiting.value, sent.value];
    return first.size + second.size === 0 ? () => false : (id) => first.has(`calls ${id}`) || second.has(`calls ${id}`);
}

/** A function that tells whether the deletion of a call was sent by now. */
export function sentCalls(): (id: number) => boolean {
    const keys = sent.value;
    return (id) => keys.has(`calls ${id}`);
}

export function waitingCount(): number {
    return waiting.value.size;
}

/** The text of the undo bar. */
export function summary(): string {
    const texts = t().deleted;
    const count = (scope: Scope) => [...waiting.value.values()].filter((each) => each.scope === scope).length;
    const parts = (["calls", "contacts", "requests"] as const).filter((scope) => count(scope) > 0).map((scope) => texts[scope](count(scope)));
    return parts.join(texts.and);
}

export function deleteLater(scope: Scope, ids: readonly (string | number)[]): void {
    if (!mayWrite.value) {
        return;
    }
    if (waiting.value.size + ids.length > maxWaiting) {
        void sendAll();
    }
    const items = ids.map((id) => ({ scope, id: String(id) }));
    waiting.value = new Map([...waiting.value, ...items.map((item) => [keyOf(item), item] as const)]);
    resume();
}

export function undo(): void {
    pause();
    waiting.value = new Map();
}

/** Stops the timer while the user is about to undo. */
export function pause(): void {
    window.clearTimeout(timer);
}

export function resume(): void {
    pause();
    if (waiting.value.size > 0) {
        timer = window.setTimeout(() => void sendAll(), undoTime);
    }
}

async function sendAll(): Promise<void> {
    pause();
    const items = [...waiting.value.values()];
    sent.value = new Set([...sent.value, ...items.map(keyOf)]);
    waiting.value = new Map();
    const refused: Item[] = [];
    let reason: unknown;
    const left = [...items];
    const work = async () => {
        for (let item = left.pop(); item; item = left.pop()) {
            try {
                await requestOf[item.scope](item.id);
            } catch (error) {
                reason = error;
                refused.push(item);
            }
        }
    };
    await Promise.all(Array.from({ length: parallel }, work));
    onSent(items, refused, reason);
}

function onSent(items: readonly Item[], refused: readonly Item[], reason: unknown): void {
    if (refused.length > 0) {
        const back = new Set(refused.map(keyOf));
        sent.value = new Set([...sent.value].filter((key) => !back.has(key)));
        report("delete", () => t().deleted.back(refused.length), reason);
    } else if (items.length > 0) {
        succeeded("delete");
    }
    contactsDeleted.value += items.filter(({ scope }) => scope === "contacts").length;
    if (items.some(({ scope }) => scope === "calls")) {
        mainFeed.refreshSoon("newest");
        personFeed.refreshSoon("newest");
    }
}

// A slow browser may not finish the work after pagehide; a mobile one may not send beforeunload.
window.addEventListener("beforeunload", () => leave());
window.addEventListener("pagehide", () => leave());

/** Sends all requests at once: a page that is left does not run on. */
function leave(): void {
    const items = [...waiting.value.values()];
    pause();
    waiting.value = new Map();
    sent.value = new Set([...sent.value, ...items.map(keyOf)]);
    items.forEach((item) => {
        requestOf[item.scope](item.id).then(
            () => onSent([item], [], undefined),
            (error: unknown) => onSent([item], [item], error),
        );
    });
}
