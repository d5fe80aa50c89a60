// tools/measure-scrolling [--calls N] [--scroll N] [--data DIR]: opens the page over a generated history (default 1,000,000 calls), scrolls
// until N calls (default 20,000) are read, jumps to a day in the middle of the history and prints the times of the frames. The status is 1
// if a frame took more than 100 ms. DIR, a directory of tools/make-history, saves the time to make one.
// The program is $CALLJOURNAL, else build/release/bin/calljournal; the browser is $CHROMIUM, else chromium.

import { execFileSync } from "node:child_process";
import * as fs from "node:fs";
import * as path from "node:path";
import { parseArgs } from "node:util";
import { Stage, at } from "../tests/web/harness.mjs";
import { scrollThrough } from "../tests/web/scroll.mjs";

const limit = 100;
const root = path.join(path.dirname(process.argv[1]), "..");
process.env.CALLJOURNAL ??= path.join(root, "build/release/bin/calljournal");
process.env.CHROMIUM ??= execFileSync("which", ["chromium"], { encoding: "utf8" }).trim();
const { values } = parseArgs({ options: { calls: { type: "string", default: "1000000" }, scroll: { type: "string", default: "20000" }, data: { type: "string" } } });

const cleanups = [];
const stage = new Stage({ after: (does) => cleanups.push(does) });
try {
    if (values.data) {
        fs.cpSync(values.data, stage.data, { recursive: true });
    } else {
        execFileSync(path.join(root, "tools/make-history"), [stage.data, "--calls", values.calls], { stdio: "inherit" });
    }
    await stage.plays("status normal");
    await stage.serves();
    const begin = performance.now();
    const page = await stage.opens({ viewport: { width: 1440, height: 900 } });
    await at(page, "row").first().waitFor();
    console.log(`the first calls are shown after ${Math.round(performance.now() - begin)} ms (browser and page)`);
    const timing = await page.evaluate(() => performance.getEntriesByType("navigation").map(({ domInteractive, loadEventEnd }) => [domInteractive, loadEventEnd])[0]);
    console.log(`interactive after ${Math.round(timing[0])} ms, loaded after ${Math.round(timing[1])} ms`);

    const { calls, frames, median, slowest } = await scrollThrough(page, Number(values.scroll), 600);
    console.log(`${calls} calls in ${frames} frames: median ${median.toFixed(1)} ms, slowest ${slowest.map((each) => each.toFixed(0)).join(", ")} ms`);
    const after = await scrollThrough(page, 500, 60);
    console.log(`500 more: median ${after.median.toFixed(1)} ms, slowest ${after.slowest.map((each) => each.toFixed(0)).join(", ")} ms`);

    const oldest = (await stage.api("GET", "calls?sort=start&limit=1")).items[0].start;
    const day = new Date((Date.parse(oldest) + Date.now()) / 2).toISOString().slice(0, 10);
    const jump = performance.now();
    await at(page, "jump-date").fill(day);
    await page.waitForFunction((wanted) => document.querySelector("[data-test=row] time")?.dateTime.slice(0, 10) <= wanted, day);
    console.log(`a jump to ${day} takes ${Math.round(performance.now() - jump)} ms`);
    process.exitCode = Math.max(...slowest, ...after.slowest) > limit ? 1 : 0;
} finally {
    for (const does of cleanups) {
        await does();
    }
}
