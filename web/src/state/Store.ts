import { useEffect, useState } from "preact/hooks";

/** Something that components show and that tells them when to show it again. */
export class Store {
    private readonly listeners = new Set<() => void>();
    private pending = false;

    subscribe(listener: () => void): () => void {
        this.listeners.add(listener);
        return () => this.listeners.delete(listener);
    }

    /** Several changes in a row are shown at once. */
    protected changed(): void {
        if (this.pending) {
            return;
        }
        this.pending = true;
        window.setTimeout(() => {
            this.pending = false;
            this.listeners.forEach((listener) => listener());
        }, 16);
    }
}

/** The component is rendered again whenever the store changes. */
export function useStore<S extends Store>(store: S): S {
    const [, setVersion] = useState(0);
    useEffect(() => store.subscribe(() => setVersion((version) => version + 1)), [store]);
    return store;
}
