import { computed, signal } from "@preact/signals";

/** The rights of the access key of this browser; docs/http-api.md has the table. */
export type Scope = "metrics" | "read" | "write" | "admin";

/** Undefined until the journal has told it; until then the page offers no action that it could refuse. */
export const scope = signal<Scope | undefined>(undefined);

/** May mark, delete, note, change contacts, and place, take and end calls. */
export const mayWrite = computed(() => scope.value === "write" || scope.value === "admin");
/** May read and change the settings of the journal. */
export const mayManage = computed(() => scope.value === "admin");
