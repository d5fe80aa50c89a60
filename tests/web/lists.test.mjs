// The contents of the views, in a language and a time zone other than the machine's.

import assert from "node:assert/strict";
import test from "node:test";
import { at, row, showJournal, withClockStopped } from "./harness.mjs";

const zone = "America/New_York";
const calls = `
call ann from 4711 "Ann" ; ring ann ; giveup ann
call bea from Alice42 "Bea Groß" ; ring bea ; giveup bea
call zoe from +493055 "Zoe" ; ring zoe ; giveup zoe
callback 4714 "Dora Lind" because busy
callback 4715 "Egon" ; callback 4715 ringing
`;

test("callbacks and times are shown in the reader's language and zone; several entries are deleted and come back", async (context) => {
    const [stage, page] = await showJournal(context, calls, { locale: "de-DE", timezoneId: zone });

    await at(page, "nav-callbacks").filter({ hasText: "2" }).click();
    await row(page, "Egon").filter({ hasText: "4715 · ringing" }).waitFor();
    await row(page, "Dora Lind").filter({ hasText: "4714 · requested, when no longer busy" }).locator(".row-entry").click();
    const time = at(page, "details").locator("time");
    const there = new Date(await time.getAttribute("datetime"));
    for (const part of [{ weekday: "long" }, { month: "long" }, { hour: "2-digit", minute: "2-digit", second: "2-digit" }]) {
        const text = there.toLocaleString("de-DE", { ...part, timeZone: zone });
        assert.ok((await time.innerText()).includes(text), text);
    }
    const gone = page.waitForResponse((each) => each.request().method() === "DELETE" && each.status() === 204);
    await at(page, "details").getByRole("button", { name: "Delete" }).click();
    await gone;
    assert.deepEqual((await stage.api("GET", "lists/callbacks")).items.map((each) => each.surname), ["Egon"]);

    // The table has the same numbers as the heatmap and the database; a new call is counted at once.
    await at(page, "nav-times").click();
    await page.getByText("3 calls in the last four weeks").waitFor();
    await stage.plays('call zoe from +493055 "Zoe" ; ring zoe ; giveup zoe');
    await page.getByText("4 calls in the last four weeks").waitFor();
    await page.getByText("The same as a table").click();
    const table = page.getByRole("table", { name: "Days with calls, the newest first" });
    assert.deepEqual(await table.getByRole("columnheader").allInnerTexts(), ["Day", "Calls", "By hour"]);
    const titles = await page.locator(".heatmap [title]").evaluateAll((all) => all.map((each) => each.title));
    const drawn = titles.filter((each) => !each.endsWith(": 0"));
    const hours = (await table.locator("td:last-child").allInnerTexts()).reverse().flatMap((each) => each.split(", "));
    assert.deepEqual(hours, drawn.map((each) => each.replace(/^.*, /, "")));
    const sum = (numbers) => numbers.reduce((one, other) => one + other);
    assert.equal(sum(hours.map((each) => Number(each.split(": ")[1]))), 4);
    assert.equal(sum((await stage.api("GET", "times")).quarters.map((each) => each.missed)), 4);
    const day = { weekday: "long", day: "numeric", month: "long", timeZone: zone };
    assert.equal(await table.getByRole("rowheader").last().innerText(), there.toLocaleDateString("de-DE", day));

    // Deletes selected entries and all found ones by keyboard, and undoes both.
    await at(page, "nav-missed").click();
    const rows = (count) => page.waitForFunction((wanted) => document.querySelectorAll("[data-test=row]").length === wanted, count);
    await rows(3);
    await row(page, "Zoe").getByRole("checkbox").focus();
    await page.keyboard.press("Space");
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Space");
    await withClockStopped(page, async () => {
        for (const [search, left, button] of [["", 1, "Delete 2 entries"], ["+49 30-55", 0, "Delete the 1 found"]]) {
            await at(page, "search").focus();
            await page.keyboard.type(search);
            await page.keyboard.press("Tab");
            assert.equal(await page.locator(":focus").innerText(), button);
            await page.keyboard.press("Enter");
            await rows(left);
            await page.keyboard.press("Control+z");
            await row(page, "Zoe").waitFor();
        }
    });
    for (const [search, count] of [["GROSS", 1], ["+493055", 1], ["alice-42", 1], ["", 3]]) {
        await at(page, "search").fill(search);
        await rows(count);
    }
    assert.equal((await stage.api("GET", "lists/missed")).total, 3);
    assert.deepEqual(stage.browserErrors, []);
});

test("the focus stays near what was deleted, Back closes an entry, and a refused deletion is shown until it is dismissed", async (context) => {
    const [stage, page] = await showJournal(context, calls, { viewport: { width: 360, height: 640 } });
    const refused = (route) => (route.request().method() === "DELETE" ? route.fulfill({ status: 503, json: {} }) : route.continue());
    const final = () => page.evaluate(() => dispatchEvent(new Event("pagehide")));
    const onRow = (name) => async (key) => {
        await row(page, name).locator("[data-control=open]").focus();
        await page.keyboard.press(key);
    };
    const on = (name) => async (key) => {
        await at(page, name).focus();
        await page.keyboard.press(key);
    };
    await row(page, "Zoe").waitFor();
    await withClockStopped(page, async () => {
        for (const [does, key, focused] of [
            [onRow("Ann"), "Delete", /Bea/],
            [on("undo"), "Enter", /Bea/],
            [onRow("Zoe"), "Enter", /Zoe/],
            [() => page.goBack(), "", /Zoe.*\n/],
            [onRow("Zoe"), "Enter", /^Zoe$/],
            [on("details-delete"), "Enter", /Bea.*\n/],
            [on("search"), "x", /^$/],
            [async () => page.getByText("Show all").press("Enter"), "", /Bea.*\n/],
            [on("delete-several"), "Enter", /^No missed calls/],
            [(key) => page.keyboard.press(key), "Control+z", /^(NEW)?[A-Z][a-z]+\n/],
        ]) {
            await does(key);
            await page.waitForFunction((wanted) => document.activeElement !== document.body && wanted.test(document.activeElement.innerText), focused);
        }
    });

    await page.route("**/lists/missed", refused);
    await onRow("Zoe")("Delete");
    await row(page, "Zoe").waitFor({ state: "detached" });
    await final();
    const failure = at(page, "failure").filter({ hasText: "1 entry could not be deleted and is back" });
    await failure.waitFor();
    await row(page, "Zoe").waitFor();
    const read = page.waitForResponse((each) => each.url().endsWith("/lists/missed") && each.request().method() === "GET");
    await stage.api("PUT", "settings", { "delete-missed-when-called": "1" }); // which makes every page read its lists
    await (await read).finished();
    await page.evaluate(() => new Promise((shown) => setTimeout(() => requestAnimationFrame(shown), 50)));
    assert.ok(await failure.isVisible());
    await failure.getByRole("button").click();
    await failure.waitFor({ state: "detached" });

    // "All" is not a list of ids.
    await page.unroute("**/lists/missed", refused);
    await at(page, "delete-several").click();
    await page.getByText("3 entries deleted, with all calls of the list").waitFor();
    const request = page.waitForRequest((each) => each.method() === "DELETE");
    await final();
    assert.equal((await request).postData(), null);
    await stage.missedAre(({ total }) => total === 0);
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

test("a thousand entries need few rows and scroll without gaps", async (context) => {
    const [stage, page] = await showJournal(context, "status normal");
    const time = new Date().toISOString();
    const items = Array.from({ length: 1000 }, (_, index) => (
        { entryId: `e${index}`, uniqueId: `u${index}`, firstName: "", surname: "", displayName: `No ${index + 1}.`, number: "1", viewed: true, occurrences: [], time }));
    await page.route("**/lists/missed", (route) => route.fulfill({ json: { list: "missed", total: 1000, unviewed: 0, items } }));
    await page.reload();
    await row(page, "No 1.").locator("[data-control=open]").focus();
    await page.keyboard.press("End");
    await row(page, "No 1000.").waitFor();
    assert.equal(await page.evaluate(() => document.activeElement.closest("li").getAttribute("aria-posinset")), "1000");
    assert.ok((await at(page, "row").count()) < 60);
    assert.equal(await page.evaluate(scrolled), 0, "places of the window without a row");
});
