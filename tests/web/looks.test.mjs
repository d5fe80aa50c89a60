// How the page looks and what can be done with it beside the lists.

import assert from "node:assert/strict";
import test from "node:test";
import { Stage, at, axeSource, row } from "./harness.mjs";

const calls = `
call ann from +4930123456789012 "Wolfeschlegelsteinhausenbergerdorff-Featherstonehaugh" via 4700 "The Hotline of the House" ; ring ann ; giveup ann
call eve from 4713 "Eve" ; ring eve ; giveup eve
call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; hangup zoe by caller
`;
const views = ["missed", "received", "forwarded", "contacts", "times", "settings"];
const looks = [[360, 640, "light"], [1440, 900, "dark"]];

/** What stands over something else, or out of the window; runs in the browser. */
function misplaced() {
    // What a scrolling box has below its edge is clipped there, so that only what is in the same box is compared.
    const shown = [...document.querySelectorAll("h1, h2, p, a, button, input, time, dt, dd, summary, .row-name, .row-facts")]
        .filter((each) => each.checkVisibility() && !each.closest(".only-heard") && each.clientWidth + each.clientHeight > 0)
        .map((each) => ({ each, box: each.getBoundingClientRect(), clip: each.closest(".rows-box, .view, .details, dialog") }));
    const outside = shown.filter(({ box }) => box.left < -1 || box.right > innerWidth + 1).map(({ each }) => `outside: ${each.outerHTML}`);
    const meet = (a, b) =>
        a.clip === b.clip && !a.each.contains(b.each) && !b.each.contains(a.each) &&
        Math.min(a.box.right, b.box.right) - Math.max(a.box.left, b.box.left) > 2 &&
        Math.min(a.box.bottom, b.box.bottom) - Math.max(a.box.top, b.box.top) > 2;
    const over = shown.flatMap((one, index) =>
        shown.slice(index + 1).filter((other) => meet(one, other)).map((other) => `${one.each.outerHTML} over ${other.each.outerHTML}`));
    return [...outside, ...over, ...(document.documentElement.scrollWidth > innerWidth ? ["the page scrolls sideways"] : [])];
}

async function isSound(page, what) {
    assert.deepEqual(await page.evaluate(misplaced), [], what);
    await page.evaluate(axeSource);
    const { violations, passes } = await page.evaluate(() => window.axe.run());
    assert.ok(passes.length > 10);
    const serious = violations.filter((each) => ["serious", "critical"].includes(each.impact));
    assert.deepEqual(serious.map((each) => `${each.id}: ${each.nodes.map((node) => node.html)}`), [], what);
}

test("every view fits its window and reads well", async (context) => {
    const stage = new Stage(context);
    await stage.plays(calls);
    await stage.serves();
    for (const [width, height, colorScheme] of looks) {
        const page = await stage.opens({ viewport: { width, height }, colorScheme });
        for (const view of views) {
            await at(page, `nav-${view}`).click();
            await at(page, `view-${view}`).locator("[data-test=row], .empty, .setting, .picture").first().waitFor();
            await isSound(page, `${view} at ${width}`);
        }
        await at(page, "nav-missed").click();
        await row(page, "Wolfe").locator(".row-entry").click();
        await isSound(page, `an open entry at ${width}`);
        await at(page, "add-contact").click();
        await at(page, "contact-dialog").waitFor();
        await isSound(page, `the dialog at ${width}`);
    }
    assert.deepEqual(stage.complaints, []);
});

test("contacts are added from an entry and changed, and refusals are explained", async (context) => {
    const stage = new Stage(context);
    await stage.plays(calls);
    await stage.serves();
    const page = await stage.opens();
    await row(page, "Eve").locator(".row-entry").click();
    await at(page, "add-contact").click();
    const dialog = at(page, "contact-dialog");
    for (const field of ["First name", "Surname", "Number, office"]) {
        await dialog.getByLabel(field).fill("");
    }
    await page.keyboard.press("Enter");
    await dialog.getByText("Not saved: a contact needs a name or a number").waitFor();
    await dialog.getByLabel("Surname").fill("Evans");
    await dialog.getByLabel("Number, office").fill("4713");
    await page.keyboard.press("Enter");
    await dialog.waitFor({ state: "detached" });
    await at(page, "nav-contacts").click();
    await at(page, "contact").click();
    await dialog.getByLabel("Company").fill("Evans Ltd");
    await page.keyboard.press("Enter");
    await at(page, "contact").filter({ hasText: "Evans Ltd · 4713" }).waitFor();

    await at(page, "nav-settings").click();
    await at(page, "missed-logging").waitFor();
    await stage.api("PUT", "settings", { "missed-logging": "1" });
    await at(page, "missed-logging").click();
    await page.getByText("Somebody else has set this already").waitFor();
    await page.locator("[data-test=missed-logging]:not(:checked)").click();
    await page.locator("[data-test=missed-logging]:checked").waitFor();
    assert.equal((await stage.api("GET", "settings"))["missed-logging"], "0");

    // A browser that the journal does not know is asked for the token.
    await page.context().clearCookies();
    await page.reload();
    await page.getByLabel("Token").fill(stage.token);
    await page.keyboard.press("Enter");
    await row(page, "Eve").waitFor();
});

test("a thousand entries need few rows", async (context) => {
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
});
