import { signal } from "@preact/signals";
import { api } from "../api/client";
import type { Call } from "../api/types";

/** The newest call that was dialled to each number, of the newest thousand: who was missed before it has been called back. */
const dialled = signal<ReadonlyMap<string, string>>(new Map());

export function readDialled(): void {
    api.calls(new URLSearchParams({ list: "dialled", limit: "1000" })).then(
        ({ items }) => {
            const found = new Map<string, string>();
            items.forEach(({ number, start }) => found.has(number) || found.set(number, start));
            dialled.value = found;
        },
        () => undefined, // read again with the next change
    );
}

/** The time at which a missed caller was called back, or undefined. */
export function calledBackAt(call: Call): string | undefined {
    if (call.list !== "missed") {
        return undefined;
    }
    const last = call.number ? dialled.value.get(call.number) : undefined;
    return call.calledBackAt ?? (last && last >= call.start ? last : undefined);
}
