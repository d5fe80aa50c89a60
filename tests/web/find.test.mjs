// Search, lists, filters and the jump to a day over a generated history; the address keeps them.

import assert from "node:assert/strict";
import test from "node:test";
import { at, row, rows, showHistory } from "./harness.mjs";

const history = ["--calls", 3000, "--parties", 60, "--days", 400, "--seed", 3];
const missed = (name, number) => `call c from ${number} "${name}" ; ring c ; giveup c\n`;
const first = (page) => page.locator("[data-test=row]").first().locator("time").getAttribute("datetime");

test("a search counts what it finds in each list; lists and filters stand in the address, and a link leads to the same view", async (context) => {
    const [stage, page] = await showHistory(context, history, "status normal", { viewport: { width: 1440, height: 900 } });
    await at(page, "row").first().waitFor();
    await page.keyboard.press("/");
    await page.keyboard.type("MULLER");
    const counts = await stage.api("GET", "statistics?search=MULLER");
    await at(page, "list-all").filter({ hasText: counts.totals.calls.toLocaleString("en") }).waitFor();
    await at(page, "list-missed").filter({ hasText: new RegExp(`${counts.totals.missed + counts.totals.completedElsewhere}  found$`) }).click();
    await page.waitForFunction(() => location.hash === "#/calls?search=MULLER&list=missed" || location.hash === "#/calls?list=missed&search=MULLER");
    await page.waitForFunction(() => [...document.querySelectorAll("[data-test=row]")].every((each) => each.matches(".row-missed, .row-elsewhere, .row-dealt")));

    await page.goto(`${stage.url}#/calls?since=2020-01-01&direction=outgoing&min-duration=60`);
    await page.reload();
    const found = (await stage.api("GET", "statistics?direction=outgoing&min-duration=60")).totals.calls;
    await at(page, "list-all").filter({ hasText: found.toLocaleString("en") }).waitFor();
    await at(page, "chip").filter({ hasText: "Outgoing" }).click();
    await at(page, "filters").click();
    await at(page, "filter-min-duration").selectOption("300");
    await at(page, "filter-time").selectOption("30d");
    await page.waitForFunction(() => location.hash === "#/calls?since=30d&min-duration=300");
    await at(page, "clear-filters").click();
    await page.goto(`${stage.url}#/calls?since=nonsense`);
    await at(page, "filter-refusal").getByText("This filter cannot be used: From “nonsense”.").waitFor();
    await page.goto(`${stage.url}#/calls?search=qqq`);
    await at(page, "empty").getByText("No call matches “qqq”.").waitFor();
    await at(page, "show-all").click();
    await at(page, "row").first().waitFor();
    assert.ok(stage.browserErrors.every((each) => each.includes("400")), stage.browserErrors.join());
});

test("a jump reaches any day, newer calls are read above it without moving what is shown, and calls that come in do not disturb", async (context) => {
    const [stage, page] = await showHistory(context, history, "status normal", { viewport: { width: 390, height: 844 }, timezoneId: "Europe/Berlin" });
    const day = new Date(Date.now() - 300 * 86_400_000).toISOString().slice(0, 10);
    await at(page, "row").first().waitFor();
    await at(page, "jump-date").fill(day);
    await at(page, "newer").waitFor();
    const expected = (await stage.api("GET", `calls?until=${new Date(Date.parse(day) + 86_400_000).toISOString().slice(0, 10)}&tz=Europe/Berlin&limit=1`)).items[0];
    await page.waitForFunction((start) => document.querySelector("[data-test=row] time").dateTime === start, expected.start);
    assert.ok(page.url().endsWith(`#/calls?at=${day}`));
    await at(page, "rows").evaluate((box) => (box.scrollTop = 100));
    const place = () => page.locator(`[data-test=row]:has(time[datetime="${expected.start}"])`).first().boundingBox();
    const before = await place();
    await at(page, "newer").evaluate((button) => button.click());
    await page.waitForFunction(() => document.querySelector(".scroll").scrollTop > 1000);
    assert.ok(Math.abs((await place()).y - before.y) < 3, "what is shown stays in place");
    await stage.plays(missed("Bob", 4714));
    await stage.until(async () => (await stage.api("GET", "calls?limit=1")).items[0].number === "4714");
    await page.waitForTimeout(800);
    assert.ok(Math.abs((await place()).y - before.y) < 3);
    await at(page, "to-newest").click();
    await row(page, "Bob").waitFor();

    // A day before all calls leads to the earliest ones.
    const earliest = (await stage.api("GET", "calls?sort=start&limit=20")).items[19];
    await at(page, "jump-date").fill("2001-02-03");
    await at(page, "to-newest").getByText("these are the first ones").waitFor();
    await page.waitForFunction((start) => document.querySelector("[data-test=row] time").dateTime === start, earliest.start);
    await at(page, "to-newest").click();
    await row(page, "Bob").waitFor();

    // A call that comes in while the list is scrolled leaves the shown ones in place, too.
    await at(page, "rows").evaluate((box) => (box.scrollTop = 3000));
    await page.waitForTimeout(300);
    const shown = await first(page);
    await stage.plays(missed("Eve", 4715));
    await page.waitForTimeout(1500);
    assert.equal(await first(page), shown);
    assert.deepEqual(stage.browserErrors, []);
});

test("everything that the filters find is deleted after a question, but no call that comes in meanwhile", async (context) => {
    const [stage, page] = await showHistory(context, history, "status normal");
    await page.goto(`${stage.url}#/calls?list=missed`);
    const total = async (list) => (await stage.api("GET", `statistics?list=${list}`)).totals.calls;
    const [missedBefore, received] = [await total("missed"), await total("received")];
    await at(page, "select").click();
    await at(page, "row").first().waitFor();
    await at(page, "select-all").click();
    await at(page, "delete-found").click();
    await at(page, "dialog").getByText(`Delete ${missedBefore.toLocaleString("en")} calls?`).waitFor();
    await stage.plays(missed("Bob", 4714));
    await stage.until(async () => (await total("missed")) === missedBefore + 1);
    await at(page, "confirm").click();
    await row(page, "Bob").waitFor();
    await rows(page, 1);
    assert.deepEqual([await total("missed"), await total("received")], [1, received]);
});
