// The view of all calls; entries with more calls than they show; marks as new and notes.

import assert from "node:assert/strict";
import test from "node:test";
import { at, isAccessible, row, showJournal } from "./harness.mjs";

const dialled = (name, number) => `dial ${name} to ${number} "${name}" ; busy ${name}\n`;
const missed = (name, number) => `call ${name} from ${number} "${name}" ; ring ${name} ; giveup ${name}\n`;
const calls = [
    missed("zoe", "+493055"),
    "call who from anonymous ; ring who ; giveup who\n",
    `call eve from 4713 "eve" via 4700 "Hotline" because busy ; ring eve ; answer eve ; wait 1100ms ; hangup eve by caller\n`,
    dialled("ann", "4711").repeat(60),
].join("");
const shown = (page, count) => page.waitForFunction((wanted) => document.querySelectorAll("[data-test=call]").length === wanted, count);

test("an entry with many calls leads to all of them, which are read while scrolling, filtered and deleted", async (context) => {
    const [stage, page] = await showJournal(context, calls);
    await row(page, "Withheld").locator(".row-entry").click();
    await at(page, "all-calls").click();
    await shown(page, 1);
    await at(page, "nav-dialled").filter({ hasText: "1" }).click();
    await row(page, "ann").filter({ hasText: "60 calls" }).locator(".row-entry").click();
    await page.getByText("The newest 10 of 60 calls.").waitFor();
    await at(page, "all-calls").click();
    await page.getByRole("heading", { name: "Today" }).waitFor();
    await at(page, "calls-state").filter({ hasText: "The newest 50 calls" }).waitFor();

    // A reader who scrolls on while the calls are read again gets the next ones too.
    const rereading = new Promise((asked) => page.route(/api\/v1\/calls\?/, (route) => asked(() => route.continue()), { times: 1 }));
    await stage.plays(dialled("ann", "4711"));
    const goOn = await rereading;
    await page.locator("[data-test=call] summary").first().focus();
    await page.keyboard.press("End");
    await page.evaluate(() => new Promise((painted) => requestAnimationFrame(() => requestAnimationFrame(painted))));
    await goOn();
    await shown(page, 61);

    // A call that comes in above does not move the calls that are shown.
    const focused = () => page.evaluate(() => document.activeElement.getBoundingClientRect().top);
    await page.keyboard.press("ArrowUp");
    const before = await focused();
    await stage.plays(dialled("ann", "4711"));
    await shown(page, 62);
    assert.ok(Math.abs((await focused()) - before) < 2);

    // The filters are those of the API and stand in the address.
    await at(page, "clear-filters").click();
    await at(page, "filter-search").fill("EVE");
    await shown(page, 1);
    assert.match(page.url(), /#\/calls\?search=EVE$/);
    await page.reload();
    await page.locator("summary").filter({ hasText: /eve.*Received · 4713 · \d s · forwarded, busy/ }).press("Enter");
    await page.getByText("Hotline, 4700").waitFor();
    await at(page, "filter-search").fill("");
    await at(page, "filters").click();
    await at(page, "filter-since").fill("next week");
    await at(page, "filter-refusal").getByText("since").waitFor();
    await at(page, "filter-since").fill("today");
    await at(page, "filter-list").selectOption("dialled");
    await at(page, "filter-number").fill("47 11");
    await shown(page, 50);
    const asked = new Promise((seen) => page.once("dialog", (dialog) => dialog.accept().then(() => seen(dialog.message()))));
    await at(page, "delete-calls").click();
    assert.match(await asked, /^Delete 62 calls\?/);
    await at(page, "calls-state").getByText("62 calls deleted.").waitFor();
    await at(page, "clear-filters").click();
    await shown(page, 3);
    assert.equal((await stage.api("GET", "lists/dialled")).total, 0);

    for (const look of [{ viewport: { width: 390, height: 800 } }, { viewport: { width: 1440, height: 900 }, colorScheme: "dark" }]) {
        const other = await stage.opens(look);
        await other.goto(`${stage.url}#/calls?direction=incoming`);
        await other.locator("summary", { hasText: "zoe" }).click();
        await isAccessible(other, `the calls, ${JSON.stringify(look)}`);
    }
});

test("an entry that is marked as new stays new until it is opened, and a note stays with its number", async (context) => {
    const [stage, page] = await showJournal(context, missed("ann", "4711"));
    await row(page, "ann").locator(".row-entry").click();
    await stage.missedAre(({ unviewed }) => unviewed === 0);
    await at(page, "note").fill("Calls back on Monday");
    await at(page, "mark-new").click();
    await stage.missedAre(({ unviewed }) => unviewed === 1);
    await page.waitForTimeout(3500); // longer than a visible entry stays new
    assert.equal((await stage.api("GET", "lists/missed")).unviewed, 1);
    assert.equal((await stage.api("GET", "parties/4711")).note, "Calls back on Monday");
    await row(page, "ann").filter({ hasText: "new" }).locator(".row-entry").click();
    await stage.missedAre(({ unviewed }) => unviewed === 0);
    assert.equal(await at(page, "note").inputValue(), "Calls back on Monday");
});
