import { useState } from "preact/hooks";
import { api } from "../api/client";
import { ConfirmDialog } from "../frame/Dialog";
import { Icon } from "../frame/Icon";
import { isWide } from "../frame/width";
import { deleteLater } from "../state/deletions";
import { report, succeeded } from "../state/failures";
import { mainFeed } from "../state/feeds";
import { filters, queryOf } from "../state/filters";
import { announce } from "../state/news";
import { markNew, markSeen } from "../state/seen";
import { wasTakenElsewhere } from "../state/unseen";
import { t } from "../text/language";
import { endSelecting, selectAll, selection } from "./shown";

interface Found {
    query: URLSearchParams;
    count: number;
}

/** The calls that the filters find now, not those that come in before the user confirms; undefined if there is none. */
async function foundNow(): Promise<Found | undefined> {
    const newest = new URLSearchParams(queryOf(filters.value));
    newest.set("limit", "1");
    const [call] = (await api.calls(newest)).items;
    if (!call) {
        return undefined;
    }
    const query = queryOf(filters.value);
    query.set("until", new Date(new Date(call.start).getTime() + 1000).toISOString().replace(/\.\d+/, ""));
    const counted = new URLSearchParams(query);
    counted.set("limit", "1");
    return { query, count: (await api.statistics(counted)).totals.calls };
}

/** The actions on the selected calls. */
export function SelectionBar() {
    const [found, setFound] = useState<Found>();
    const [isBusy, setBusy] = useState(false);
    const calls = selection.value;
    const texts = t().selection;
    const missed = calls.filter((call) => call.list === "missed" && !wasTakenElsewhere(call));
    const all = mainFeed.calls.value.length;

    const run = async (work: () => Promise<void>) => {
        setBusy(true);
        try {
            await work();
            succeeded("delete calls");
        } catch (error) {
            report("delete calls", () => t().errors.delete, error);
        }
        setBusy(false);
    };
    const deleteFound = ({ query }: Found) =>
        run(async () => {
            const count = await api.deleteCalls(query);
            announce(texts.deleted(count));
            endSelecting();
            mainFeed.refreshSoon("all");
        });
    const button = (name: string, text: string, onClick: () => void, disabled = false, brief = text) => (
        <button
            type="button"
            class={name.startsWith("delete") ? "far-button" : undefined}
            data-test={name}
            aria-label={text}
            title={text}
            disabled={disabled || isBusy}
            onClick={onClick}
        >
            {isWide.value ? text : brief}
        </button>
    );
    return (
        <div class="selection-bar" role="group" aria-label={texts.label} data-test="selection-bar">
            <button type="button" class="icon-button" aria-label={texts.done} title={texts.done} data-test="end-selecting" onClick={endSelecting}>
                <Icon name="close" />
            </button>
            <span role="status" class="selection-count">
                {isBusy ? texts.deleting : t().selected(calls.length)}
            </span>
            {calls.length < all && button("select-all", texts.all, selectAll, false, texts.allBrief)}
            {button("mark-seen", texts.seen, () => markSeen(missed, true), missed.length === 0, texts.seenBrief)}
            {button("mark-new", texts.new, () => markNew(missed), missed.length === 0, texts.newBrief)}
            {mainFeed.hasOlder.value && calls.length === all && calls.length > 0
                ? button("delete-found", `${t().delete} …`, () => void run(async () => setFound(await foundNow())))
                : button("delete-selected", t().delete, () => deleteLater("calls", calls.map(({ id }) => id)), calls.length === 0)}
            {found && (
                <ConfirmDialog
                    title={(Object.keys(filters.value).length > 0 ? texts.deleteFound : texts.deleteAll)(found.count)}
                    action={t().delete}
                    isDangerous
                    onConfirm={() => void deleteFound(found)}
                    onClose={() => setFound(undefined)}
                >
                    {texts.confirm(found.count)}
                </ConfirmDialog>
            )}
        </div>
    );
}
