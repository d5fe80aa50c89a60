import { useLayoutEffect, useState } from "preact/hooks";

/** State that components render; notifies them when it changes. */
export class Store {
    private readonly listeners = new Set<() => void>();
    private pending: number | undefined;

    subscribe(listener: () => void): () => void {
        this.listeners.add(listener);
        return () => this.listeners.delete(listener);
    }

    /** Notifies at once, so that the next key or click applies to the new state. */
    protected changed(): void {
        window.clearTimeout(this.pending);
        this.pending = undefined;
        this.listeners.forEach((listener) => listener());
    }

    /** Notifies after a short time, so that changes that come in bursts are rendered once. */
    protected changedSoon(): void {
        this.pending ??= window.setTimeout(() => this.changed(), 16);
    }
}

/** Renders the component again when the store changes. */
export function useStore<S extends Store>(store: S): S {
    const [, setVersion] = useState(0);
    useLayoutEffect(() => store.subscribe(() => setVersion((version) => version + 1)), [store]);
    return store;
}
