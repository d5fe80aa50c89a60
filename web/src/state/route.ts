import { computed, signal } from "@preact/signals";

export const views = ["calls", "contacts", "statistics", "settings"] as const;
export type View = (typeof views)[number];

interface Address {
    view: View;
    parameters: URLSearchParams;
}

/** "#/calls?list=missed&person=%2B4930". Addresses of earlier versions ("#/missed") lead to the list. */
function parsed(hash: string): Address {
    const [, name = "", query = ""] = /^#\/?([^/?]*)[^?]*(?:\?(.*))?/.exec(hash) ?? [];
    const view = views.find((each) => each === name) ?? "calls";
    const parameters = new URLSearchParams(query);
    if (["missed", "dialled", "received", "forwarded"].includes(name)) {
        parameters.set("list", name);
    }
    return { view, parameters };
}

const address = signal(parsed(window.location.hash));

/**
 * Set while the browser goes back to close details, which is asynchronous. `target` is the address to arrive at, since the filters may have
 * changed after the opening. What is opened meanwhile waits, or going back would close it.
 */
let returning: { target: string; next?: Record<string, string> } | undefined;

function follow(): void {
    address.value = parsed(window.location.hash);
}

window.addEventListener("hashchange", follow);
window.addEventListener("popstate", () => {
    const { target, next } = returning ?? {};
    returning = undefined;
    if (target) {
        window.history.replaceState(window.history.state, "", target);
    }
    follow();
    if (next) {
        openDetails(next);
    }
});

export const view = computed(() => address.value.view);

/** A parameter of the address; undefined if it is absent or empty. */
export function parameter(name: string): string | undefined {
    return address.value.parameters.get(name)?.trim() || undefined;
}

/** The address of a view with these parameters instead of those of the current address; empty ones are left out. */
export function addressOf(target: View, parameters: Record<string, string | undefined> = {}): string {
    const set = Object.entries(parameters).filter((each): each is [string, string] => Boolean(each[1]));
    const query = new URLSearchParams(set).toString();
    return `#/${target}${query && `?${query}`}`;
}

function changed(changes: Record<string, string | undefined>): string {
    return addressOf(view.value, { ...Object.fromEntries(address.value.parameters), ...changes });
}

/** Changes parameters of the address without a further step of the browser's history. */
export function setParameters(changes: Record<string, string | undefined>): void {
    window.history.replaceState(window.history.state, "", changed(changes));
    follow();
}

/** Changes parameters of the address as a step of the browser's history. */
export function goTo(changes: Record<string, string | undefined>): void {
    window.history.pushState(null, "", changed(changes));
    follow();
}

const details = ["person", "call"];
export const detailsOpen = computed(() => details.some((name) => parameter(name) !== undefined));

/** Opens a person beside or in place of the calls. The browser's Back closes it; moving on to another one adds no step. */
export function openDetails(which: Record<string, string>): void {
    if (returning) {
        returning.next = which;
        return;
    }
    const target = changed({ person: undefined, call: undefined, ...which });
    if (detailsOpen.value) {
        window.history.replaceState(window.history.state, "", target);
    } else {
        window.history.pushState({ opened: true }, "", target);
    }
    follow();
}

export function closeDetails(): void {
    if (!detailsOpen.value) {
        return;
    }
    const closed = changed({ person: undefined, call: undefined });
    if ((window.history.state as { opened?: boolean } | null)?.opened) {
        returning = { target: closed };
        window.history.back();
        address.value = parsed(closed);
    } else {
        window.history.replaceState(null, "", closed); // the page was loaded with this address
        follow();
    }
}
