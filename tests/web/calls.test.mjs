// The opening view: one order of time, rows of several calls, live changes, selection and deletion, most of it by keyboard.

import assert from "node:assert/strict";
import test from "node:test";
import { at, openRow, row, rows, setShown, showJournal, withClockStopped } from "./harness.mjs";

const evil = "<img src=x onerror=alert(1)>";
const missed = (name, number) => `call c from ${number} "${name}" ; ring c ; giveup c ; wait 1100ms\n`;
const calls = `
call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; wait 1100ms ; hangup zoe by caller
dial bob to 4714 "Bob" ; busy bob
call eve from 4713 "${evil}" via 4700 "Hotline" because busy ; ring eve ; giveup eve
${missed("Ann Müller", 4711)}${missed("Ann Müller", 4711)}`;

const names = (page) => page.locator("[data-test=row] .row-name bdi").allInnerTexts();
const onRow = (page, name) => row(page, name).locator("[data-control=open]");

test("all calls are in one order of time; calls that follow each other are one row, which opens; new ones appear by themselves", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { slowness: 6, viewport: { width: 1440, height: 900 } });
    await at(page, "empty").getByText("No calls yet").waitFor();
    await page.evaluate(() => (window.sameDocument = true));
    await setShown(page, false);
    await stage.plays(`call team from 4730 "Team" ; ring team ; elsewhere team ; wait 1100ms\n${calls}`);
    await row(page, "Ann Müller").filter({ hasText: ", 2 calls" }).waitFor();
    assert.deepEqual(await names(page), ["Ann Müller", evil, "Bob", "Zoë", "Team"]);
    assert.equal(await page.locator("img").count(), 0);
    for (const [name, words] of [["Ann", /, new.*Missed · 4711/s], [evil, /Missed · 4713/], ["Bob", /Dialled, no answer · 4714/], ["Zoë", /4712.*, \d\ss/s]]) {
        assert.match(await onRow(page, name).textContent(), words);
    }
    await page.getByRole("heading", { name: "Today" }).waitFor();
    // A call that another telephone took is not new; the badge counts the dots.
    await at(page, "unseen").filter({ hasText: "2" }).waitFor();
    assert.equal(await page.locator(".row-new").count(), 2);

    // Neither a hidden window nor one without the focus marks calls as seen.
    await page.waitForTimeout(3500);
    assert.equal((await stage.api("GET", "lists/missed")).unviewed, 3);
    await setShown(page, true);
    await stage.missedAre(({ unviewed }) => unviewed === 0);

    await onRow(page, "Ann").focus();
    await page.keyboard.press("ArrowRight");
    await page.waitForFunction(() => document.querySelectorAll("[data-test=single]").length === 2);
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Enter");
    await at(page, "person").getByText("Forwarded here by Hotline, line was busy").waitFor();
    await page.keyboard.press("Escape");
    await at(page, "today").waitFor();
    assert.ok(await page.evaluate(() => window.sameDocument));
    assert.deepEqual(stage.browserErrors, []);
});

test("rows are selected and deleted by keyboard, with undo; the focus stays near; what the server refuses to delete is back", async (context) => {
    const [stage, page] = await showJournal(context, calls, { viewport: { width: 390, height: 844 } });
    await row(page, "Ann Müller").filter({ hasText: ", 2 calls" }).waitFor();
    const focused = () => page.evaluate(() => document.activeElement.closest("[data-test=row]")?.innerText);
    await withClockStopped(page, async () => {
        await onRow(page, "Bob").focus();
        await page.keyboard.press("Delete");
        await rows(page, 3);
        assert.match(await focused(), /Zoë/);
        await page.keyboard.press("ArrowUp");
        await page.keyboard.press(" ");
        await at(page, "selection-bar").getByText("1 selected").waitFor();
        await page.keyboard.press("Control+a");
        await at(page, "selection-bar").getByText("4 selected").waitFor();
        await at(page, "delete-selected").press("Enter");
        await at(page, "empty").waitFor();
        await page.keyboard.press("Control+z");
        await rows(page, 4);
    });
    await at(page, "end-selecting").click();

    // A deletion is final after a moment, or when the user leaves the page.
    const gone = page.waitForResponse((each) => each.request().method() === "DELETE" && each.status() === 204);
    await onRow(page, "Bob").press("Delete");
    await gone;
    await page.route("**/api/v1/calls/*", (route) => route.fulfill({ status: 503, json: {} }), { times: 1 });
    await onRow(page, "Zoë").press("Delete");
    await rows(page, 2);
    await page.evaluate(() => dispatchEvent(new Event("pagehide")));
    await at(page, "failure").getByText("It could not be deleted and is back").waitFor();
    await rows(page, 3);
    await onRow(page, "Ann").press("Delete");
    await page.goto("about:blank");
    await stage.until(async () => (await stage.api("GET", "calls")).items.map(({ number }) => number).join() === "4713,4712");
});

test("Back closes a person; on a telephone it takes the whole window", async (context) => {
    const [, page] = await showJournal(context, calls, { viewport: { width: 390, height: 844 } });
    await row(page, "Ann Müller").filter({ hasText: ", 2 calls" }).waitFor();
    await openRow(page, "Zoë");
    await at(page, "person").waitFor();
    assert.equal(await at(page, "rows").isVisible(), false);
    await page.goBack();
    await at(page, "rows").waitFor();
    await openRow(page, "Ann");
    await at(page, "close").click();
    await row(page, "Bob").waitFor();
    await page.waitForFunction(() => location.hash === "#/calls" || location.hash === "");
});

test("the page reconnects after the connection was lost, and tells the state of the line", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { viewport: { width: 1440, height: 900 } });
    await at(page, "line-state").getByText("Ready").waitFor();
    stage.running.delete(stage.server);
    stage.server.kill("SIGKILL");
    await at(page, "offline").waitFor();
    await stage.plays(missed("Bob", 4714));
    await stage.serves();
    await row(page, "Bob").waitFor();
    await at(page, "offline").waitFor({ state: "detached" });
    await stage.stop(stage.simulator);
    await at(page, "line-state").getByText("No connection to the telephone system").waitFor();
});
