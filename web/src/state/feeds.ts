import { CallFeed } from "./CallFeed";

/** The calls of the main view, and those with the open person. */
export const mainFeed = new CallFeed();
export const personFeed = new CallFeed();
/** The calls of the missed entries that the user has not seen. */
export const newFeed = new CallFeed();
export const feeds: readonly CallFeed[] = [mainFeed, personFeed, newFeed];
