import { CallFeed } from "./CallFeed";

/** The calls of the main view, and those with the open person. */
export const mainFeed = new CallFeed();
export const personFeed = new CallFeed();
export const feeds: readonly CallFeed[] = [mainFeed, personFeed];
