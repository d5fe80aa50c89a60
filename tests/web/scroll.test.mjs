// The short form of tools/measure-scrolling: a long list loads by cursor as it is scrolled, and the frames stay short.

import assert from "node:assert/strict";
import test from "node:test";
import { at, showHistory } from "./harness.mjs";
import { scrollThrough } from "./scroll.mjs";

test("thousands of calls load as they are scrolled, with few rows in the page and short frames", async (context) => {
    const [stage, page] = await showHistory(context, ["--calls", 20_000, "--parties", 500, "--days", 300], "status normal", { viewport: { width: 390, height: 844 } });
    await at(page, "row").first().waitFor();
    const { calls, median, slowest } = await scrollThrough(page, 4000, 60);
    assert.ok(calls >= 4000, `${calls}`);
    assert.ok((await at(page, "row").count()) < 60);
    // The machine of the tests does other things, too: the long form has the limit for the slowest frame.
    assert.ok(median < 50 && slowest[2] < 250, `${median}, ${slowest}`);
    assert.deepEqual(stage.browserErrors, []);
});
