// A long list loads by cursor as it is scrolled, and the page has few rows of it. tools/measure-scrolling measures the frames.

import assert from "node:assert/strict";
import test from "node:test";
import { at, showHistory } from "./harness.mjs";
import { scrollThrough } from "./scroll.mjs";

test("thousands of calls load as they are scrolled, with few rows in the page", async (context) => {
    const [stage, page] = await showHistory(context, ["--calls", 20_000, "--parties", 500, "--days", 300], "status normal", { viewport: { width: 390, height: 844 } });
    await at(page, "row").first().waitFor();
    const { calls } = await scrollThrough(page, 4000, 60);
    assert.ok(calls >= 4000, `${calls}`);
    assert.ok((await at(page, "row").count()) < 60);
    assert.deepEqual(stage.browserErrors, []);
});
