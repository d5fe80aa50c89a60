// Tests that measure time; no other test runs beside them.

import assert from "node:assert/strict";
import test from "node:test";
import { Stage, at, row } from "./harness.mjs";

test("the demo's page shows its first call within ten seconds", async (context) => {
    const stage = new Stage(context);
    await stage.opens({}, "about:blank"); // the browser's own start does not count
    const begin = performance.now();
    const [, address] = await stage.start(/^ +(http\S+token=\S+)$/, "demo", "--data", stage.data, "--listen", "127.0.0.1:0");
    const page = await stage.opens({}, address);
    await at(page, "row").first().waitFor();
    const time = performance.now() - begin;
    assert.ok(time < 10_000, `after ${time} ms`);
});

/** Scrolls quickly through the list in 120 frames. Returns the number of sampled points without a row. */
async function scrolled() {
    const box = document.querySelector("[data-test=rows]");
    const { left, top, width, height } = box.getBoundingClientRect();
    const end = box.scrollHeight - box.clientHeight;
    let empty = 0;
    for (let step = 120; step-- > 0; ) {
        box.scrollTop = (end * step) / 120;
        await new Promise(requestAnimationFrame);
        for (let y = 1; y < height - 10; y += 30) {
            empty += document.elementFromPoint(left + width / 2, top + y)?.closest("[data-test=row]") ? 0 : 1;
        }
    }
    return empty;
}

/** Creates a thousand rows, as a page without windowing does in each frame. */
function allRows() {
    const rows = document.querySelector(".rows");
    const all = rows.cloneNode();
    all.append(...Array.from({ length: 1000 }, () => rows.firstElementChild.cloneNode(true)));
    rows.after(all);
    all.lastElementChild.getBoundingClientRect();
    all.remove();
}

test("a thousand entries need few rows and scroll smoothly", async (context) => {
    const stage = new Stage(context);
    await stage.plays("status normal");
    await stage.serves();
    const page = await stage.opens();
    const time = new Date().toISOString();
    const items = Array.from({ length: 1000 }, (_, index) => (
        { entryId: `e${index}`, uniqueId: `u${index}`, firstName: "No", surname: `${index + 1}.`, number: "1", viewed: true, occurrences: [], time }));
    await page.route("**/lists/missed", (route) => route.fulfill({ json: { list: "missed", total: 1000, unviewed: 0, items } }));
    await page.reload();
    await row(page, "No 1.").locator("[data-control=open]").focus();
    await page.keyboard.press("End");
    await row(page, "No 1000.").waitFor();
    assert.equal(await page.evaluate(() => document.activeElement.closest("li").getAttribute("aria-posinset")), "1000");
    assert.ok((await at(page, "row").count()) < 60);

    // Processor time: other programs influence it less than wall-clock time.
    const devTools = await page.context().newCDPSession(page);
    await devTools.send("Performance.enable", { timeDomain: "threadTicks" });
    const spent = async () => (await devTools.send("Performance.getMetrics")).metrics.find((each) => each.name === "TaskDuration").value;
    const begin = await spent();
    assert.equal(await page.evaluate(scrolled), 0, "places of the window without a row");
    const end = await spent();
    await page.evaluate(allRows);
    const [aFrame, all] = [(end - begin) / 120, (await spent()) - end];
    assert.ok(aFrame < all / 4, `${aFrame} s a frame, ${all} s for all rows`);
});
