import { useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import type { Call } from "../api/types";
import { callHistory, failures } from "../state/app";
import { callQuery, type CallFilters } from "../state/callFilters";
import { plural } from "../text/names";
import { callTitle } from "./callText";

const lastWords = "This cannot be undone; they leave the lists, too.";

/** The time after the call, as the filter `until` has it. */
function timeAfter(call: Call): string {
    return new Date(new Date(call.start).getTime() + 1000).toISOString().replace(/\.\d+/, "");
}

/** Deletes calls after a confirmation. `result` is the text about the latest deletion. */
export function useCallDeletion(filters: CallFilters) {
    const [result, setResult] = useState("");
    const [isBusy, setBusy] = useState(false);
    const busy = useRef(false);

    const run = async (work: () => Promise<string>) => {
        if (busy.current) {
            return;
        }
        busy.current = true;
        setBusy(true);
        setResult("");
        try {
            setResult(await work());
            failures.clear("delete calls");
        } catch (error) {
            failures.report("delete calls", "The calls were not deleted", error);
        }
        busy.current = false;
        setBusy(false);
        callHistory.refreshSoon();
    };
    /** Deletes the calls that the filters find now, not those that come in before the user confirms. */
    const deleteFound = () =>
        run(async () => {
            const [newest] = (await api.calls(callQuery(filters), 1, null)).items;
            if (!newest) {
                return "No call to delete.";
            }
            const query = callQuery({ ...filters, until: timeAfter(newest) });
            const count = await api.countCalls(query);
            if (!window.confirm(`Delete ${plural(count, "call", "calls")}? ${lastWords}`)) {
                return "";
            }
            setResult("Deleting …");
            return `${plural(await api.deleteCalls(query), "call", "calls")} deleted.`;
        });
    const deleteOne = (call: Call) =>
        run(async () => {
            if (!window.confirm(`Delete this call of ${callTitle(call)}? This cannot be undone.`)) {
                return "";
            }
            await api.deleteCall(call.id);
            return "1 call deleted.";
        });
    return { result, isBusy, deleteFound, deleteOne };
}
