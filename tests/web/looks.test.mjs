// Layout and accessibility of every view; contacts, settings, sign-in.

import assert from "node:assert/strict";
import test from "node:test";
import { at, fits, isAccessible, row, showJournal, withClockStopped } from "./harness.mjs";

const calls = `
call ann from +4930123456789012 "Wolfeschlegelsteinhausenbergerdorff-Featherstonehaugh" via 4700 "The Hotline of the Company" ; ring ann ; giveup ann
call eve from 4713 "Eve" ; ring eve ; giveup eve
call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; hangup zoe by caller
`;
const views = ["missed", "received", "forwarded", "calls", "contacts", "times", "settings"];
const looks = [
    { viewport: { width: 360, height: 640 }, colorScheme: "light" },
    { viewport: { width: 1440, height: 900 }, colorScheme: "dark" },
];
// A font of twice the size; a wide window at 400 %.
const narrow = [{ viewport: { width: 360, height: 640 }, fontSize: 32 }, { viewport: { width: 320, height: 256 } }];

test("every view fits its window and reads well", async (context) => {
    const [stage] = await showJournal(context, calls);
    for (const look of [...looks, ...narrow]) {
        const page = await stage.opens(look);
        const shape = JSON.stringify(look);
        const [check, shown] = narrow.includes(look) ? [fits, ["missed", "calls", "settings"]] : [isAccessible, views];
        for (const view of shown) {
            await at(page, `nav-${view}`).click();
            await at(page, `view-${view}`).locator("[data-test=row], [data-test=call], .empty, .setting, .heatmap").first().waitFor();
            await check(page, `${view}, ${shape}`);
        }
        await at(page, "nav-missed").click();
        await row(page, "Wolfe").locator(".row-entry").click();
        await check(page, `an open entry, ${shape}`);
        await at(page, "add-contact").click();
        await at(page, "contact-dialog").waitFor();
        await check(page, `the dialog, ${shape}`);
    }
    assert.deepEqual(stage.browserErrors, []);
});

test("contacts are added from an entry, changed and deleted, and refusals are explained", async (context) => {
    const [stage, page] = await showJournal(context, calls);
    await row(page, "Eve").locator(".row-entry").click();
    await at(page, "add-contact").click();
    const dialog = at(page, "contact-dialog");
    for (const field of ["First name", "Surname", "Number, office"]) {
        await dialog.getByLabel(field).fill("");
    }
    await page.keyboard.press("Enter");
    await dialog.getByText("Not saved: a contact needs a name, a company or a number").waitFor();
    await dialog.getByLabel("Surname").fill("Evans");
    await dialog.getByLabel("Number, office").fill("4713");
    await dialog.locator("form").evaluate((form) => [form.requestSubmit(), form.requestSubmit()]);
    await dialog.waitFor({ state: "detached" });
    assert.equal((await stage.api("GET", "contacts")).total, 1);
    await at(page, "add-contact").filter({ hasText: "Change the contact" }).waitFor();
    // The contact may still be unknown when the user presses the button.
    await at(page, "close").click();
    await page.route(/contacts.number=/, () => {}, { times: 1 });
    await row(page, "Evans").locator(".row-entry").click();
    await at(page, "add-contact").filter({ hasText: "Add to contacts" }).click();
    await dialog.getByText("Change the contact").waitFor();
    await dialog.getByLabel("E-mail").fill("eve@example.org");
    await page.keyboard.press("Enter");
    await dialog.waitFor({ state: "detached" });
    assert.deepEqual((await stage.api("GET", "contacts?number=47 13")).contacts.map((each) => each.surname + each.email), ["Evanseve@example.org"]);
    await at(page, "nav-contacts").click();
    await at(page, "contact").click();
    await dialog.getByLabel("Company").fill("Evans Ltd");
    let save;
    const sent = new Promise((taken) => page.route("**/contacts/*", (route) => {
        save = () => route.continue();
        taken();
    }, { times: 1 }));
    await page.keyboard.press("Enter");
    await sent;
    await page.keyboard.press("Escape");
    await dialog.waitFor({ state: "detached" });
    await save();
    await at(page, "contact").filter({ hasText: "Evans Ltd" }).waitFor();
    // The entry stays when the contact is deleted.
    await stage.plays('call eve from 4713 "Eve" ; ring eve ; giveup eve');
    await at(page, "nav-missed").click();
    await row(page, "Evans").filter({ hasText: "2 calls" }).waitFor();
    await at(page, "nav-contacts").click();
    await at(page, "contact").filter({ hasText: "Evans Ltd · 4713" }).click();
    await withClockStopped(page, async () => {
        await dialog.getByRole("button", { name: "Delete" }).click();
        await page.getByText("No contacts").waitFor();
        await at(page, "undo").click();
    });
    await at(page, "contact").click();
    await dialog.getByRole("button", { name: "Delete" }).click();
    await page.locator("[type=search]:focus").waitFor();
    const gone = page.waitForResponse((each) => each.request().method() === "DELETE" && each.status() === 204);
    await page.evaluate(() => dispatchEvent(new Event("pagehide"))); // ends the time for undo
    await gone;

    await at(page, "nav-settings").click();
    await page.locator("[data-test=missed-logging]:checked").waitFor();
    await stage.api("PUT", "settings", { "missed-logging": "1" });
    await page.locator("[data-test=missed-logging]:not(:checked)").waitFor();
    let changes = 0;
    page.on("request", (each) => (changes += each.method() === "PUT"));
    await at(page, "missed-logging").evaluate((box) => [box.click(), box.click()]);
    await page.locator("[data-test=missed-logging]:checked").waitFor();
    assert.equal(changes, 1, "a second press while the first one is under way");
    assert.equal((await stage.api("GET", "settings"))["missed-logging"], "0");

    // A browser without the cookie must enter the token.
    await page.context().clearCookies();
    await page.reload();
    for (const token of ["wrong", stage.token]) {
        await page.locator("[type=password]:focus").fill(token);
        await page.keyboard.press("Enter");
        await page.getByText(token === "wrong" ? "That was not the token" : "Evans").first().waitFor();
        assert.equal(new URL(page.url()).search, "");
    }
    await row(page, "Evans").waitFor();
});
