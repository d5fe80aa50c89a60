import { signal } from "@preact/signals";

const wide = window.matchMedia("(min-width: 56rem)");

/** True if the lists stand beside the calls, false if above them. */
export const isWide = signal(wide.matches);

wide.addEventListener("change", () => (isWide.value = wide.matches));
