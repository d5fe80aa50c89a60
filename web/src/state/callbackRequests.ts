import { computed, signal } from "@preact/signals";
import { api } from "../api/client";
import type { CallbackRequest } from "../api/types";
import { t } from "../text/language";
import { isHidden } from "./deletions";
import { filters } from "./filters";
import { reportOnce, succeeded } from "./failures";

const read = signal<readonly CallbackRequest[] | undefined>(undefined);

/** The requests to call back that the telephone system keeps; undefined until they are read. */
export const requests = computed(() => read.value?.filter(({ entryId }) => !isHidden("requests", entryId)));

const plain = (text: string) => text.normalize("NFD").replace(/[\u0300-\u036f\s()/.-]/g, "").toLowerCase();

/** Those that the search finds; undefined while filters are set, which select calls. */
export const foundRequests = computed(() => {
    const { search = "", list: _, ...others } = filters.value;
    const wanted = plain(search);
    const isFound = ({ displayName, number, numberText }: CallbackRequest) => [displayName, number, numberText].some((each) => plain(each).includes(wanted));
    return Object.keys(others).length > 0 ? undefined : requests.value?.filter(isFound);
});

export function readRequests(): void {
    api.callbackRequests().then(
        (found) => {
            read.value = found;
            succeeded("requests");
        },
        (error: unknown) => reportOnce("requests", () => t().errors.requests, error),
    );
}
