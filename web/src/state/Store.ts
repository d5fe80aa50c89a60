import { useLayoutEffect, useState } from "preact/hooks";

/** Something that components show and that tells them when to show it again. */
export class Store {
    private readonly listeners = new Set<() => void>();
    private pending: number | undefined;

    subscribe(listener: () => void): () => void {
        this.listeners.add(listener);
        return () => this.listeners.delete(listener);
    }

    /** Shown before the next key or click is handled, which may mean what shows then. */
    protected changed(): void {
        window.clearTimeout(this.pending);
        this.pending = undefined;
        this.listeners.forEach((listener) => listener());
    }

    /** For what comes from outside in bursts: several changes in a row are shown at once. */
    protected changedSoon(): void {
        this.pending ??= window.setTimeout(() => this.changed(), 16);
    }
}

/** The component is rendered again whenever the store changes. */
export function useStore<S extends Store>(store: S): S {
    const [, setVersion] = useState(0);
    useLayoutEffect(() => store.subscribe(() => setVersion((version) => version + 1)), [store]);
    return store;
}
