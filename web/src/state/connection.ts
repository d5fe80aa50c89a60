import { computed, signal } from "@preact/signals";
import { EventStream } from "../api/EventStream";
import { api } from "../api/client";
import { ApiError } from "../api/request";
import type { Change, ListName, Status } from "../api/types";
import { readRequests } from "./callbackRequests";
import { readDialled } from "./dealtWith";
import { signedOut } from "./failures";
import { feeds, newFeed } from "./feeds";
import { onLiveCalls, readLiveCalls } from "./live";
import { lineCount, readLines } from "./lines";
import { onMissedCall } from "./news";
import { scope } from "./rights";
import { readSettings } from "./settings";

const pollInterval = 2000;
const actions = { added: 0, updated: 1 };

export const status = signal<Status | undefined>(undefined);
/** Incremented when calls, parties or contacts may have changed; what shows them reads them again. */
export const version = signal(0);

/** Undefined until the first attempt to open the stream has ended. */
const streaming = signal<boolean | undefined>(undefined);
const reachable = signal(true);
export const online = computed(() => (streaming.value === undefined ? undefined : streaming.value && reachable.value));

function onChange(list: ListName, { action, item }: Change): void {
    if (list === "callbacks") {
        readRequests();
        return;
    }
    const isUpdate = action === actions.added || action === actions.updated;
    feeds.forEach((feed) => feed.refreshSoon(isUpdate ? "newest" : "all"));
    if (list === "missed" && isUpdate && item && item.viewed === false) {
        onMissedCall(item);
    }
    if (list === "dialled") {
        readDialled();
    }
    ++version.value;
    void readStatus();
}

function reload(): void {
    feeds.forEach((feed) => feed.refreshSoon("all"));
    readRequests();
    readLiveCalls();
    readDialled();
    void readSettings();
    void readLines();
    ++version.value;
}

const stream = new EventStream({
    changed: onChange,
    unviewedCount: () => {
        feeds.forEach((feed) => feed.refreshSoon("newest"));
        void readStatus();
    },
    liveCalls: onLiveCalls,
    reload,
    connected: (up) => (streaming.value = up),
});

async function readStatus(): Promise<void> {
    try {
        status.value = await api.status();
        scope.value = status.value.scope;
        if (!reachable.value) {
            // The stream does not notice a connection that was cut without a reset.
            reachable.value = true;
            stream.open();
        }
        feeds.forEach((feed) => feed.retry());
    } catch (error) {
        if (error instanceof ApiError && error.status === 401) {
            stream.close();
            signedOut.value = true;
            return;
        }
        reachable.value = false;
    }
}

/** New calls of other lines are not reported to this page. */
const linesInterval = 30_000;
window.setInterval(() => !signedOut.value && lineCount.value > 1 && void readLines(), linesInterval);

let timer: number | undefined;

async function poll(): Promise<void> {
    window.clearTimeout(timer);
    await readStatus();
    if (!signedOut.value) {
        window.clearTimeout(timer);
        timer = window.setTimeout(() => void poll(), pollInterval);
    }
}

/** Polls the status and keeps the event stream open, until the journal asks for the access key. Call it again after signing in. */
export function connect(): void {
    newFeed.open({ list: "missed", viewed: "false" });
    stream.open();
    void poll();
}

export async function signOut(): Promise<void> {
    await api.signOut();
    stream.close();
    signedOut.value = true;
}
