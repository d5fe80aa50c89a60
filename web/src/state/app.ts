import { Deletions } from "./Deletions";
import { Journal } from "./Journal";
import { LineState } from "./LineState";

/** The page's state: one of each. */
export const journal = new Journal();
export const deletions = new Deletions(journal);
export const lineState = new LineState(journal);
