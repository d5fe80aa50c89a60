import { computed, signal } from "@preact/signals";
import { api } from "../api/client";
import type { CallbackRequest } from "../api/types";
import { t } from "../text/language";
import { isHidden } from "./deletions";
import { reportOnce, succeeded } from "./failures";

const read = signal<readonly CallbackRequest[] | undefined>(undefined);

/** The requests to call back that the telephone system keeps; undefined until they are read. */
export const requests = computed(() => read.value?.filter(({ entryId }) => !isHidden("requests", entryId)));

export function readRequests(): void {
    api.callbackRequests().then(
        (found) => {
            read.value = found;
            succeeded("requests");
        },
        (error: unknown) => reportOnce("requests", t().errors.requests, error),
    );
}
