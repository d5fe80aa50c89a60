import type { Entry, ListName } from "../api/types";
import { ContactImport } from "./ContactImport";
import { CallHistory } from "./CallHistory";
import { Deletions } from "./Deletions";
import { Failures } from "./Failures";
import { Journal } from "./Journal";
import { LineState } from "./LineState";
import { Route } from "./route";
import { Settings } from "./Settings";

/** The state of the page. */
export const route = new Route();
export const failures = new Failures();
export const journal = new Journal(failures);
export const settings = new Settings(failures);
export const deletions = new Deletions(journal, failures);
export const callHistory = new CallHistory(failures);
export const lineState = new LineState(journal, callHistory, settings, failures);
export const contactImport = new ContactImport(failures);

/** The entries of a list without those just deleted. A component that calls this uses the stores `journal` and `deletions`. */
export function shownEntries(list: ListName): readonly Entry[] {
    return journal.entries(list).filter((each) => !deletions.isHidden(list, each.entryId));
}

export function unviewedShown(): number {
    return shownEntries("missed").filter((each) => each.viewed === false).length;
}
