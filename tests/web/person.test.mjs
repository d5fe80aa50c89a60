// A person: what became of each call, note, contact, calling back, erasing.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import test from "node:test";
import { at, openRow, row, showJournal, Stage } from "./harness.mjs";

const calls = `
call ann from 4711 "Ann Müller" ; ring ann ; answer ann ; wait 1100ms
consult bob from ann to 4712 "Bob Fischer" ; connect bob ; transfer ann to bob ; wait 300ms ; hangup ann
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann ; wait 1100ms
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann ; wait 1100ms
call team from 4730 "Team line" ; ring team ; elsewhere team
call office from 4720 "Reception" via 4700 "Hotline" because busy ; ring office ; giveup office
call secret from anonymous ; ring secret ; giveup secret
`;
const wide = { viewport: { width: 1440, height: 900 } };

test("a person has totals, every call in words, a note that stays, numbers to copy and the contact", async (context) => {
    const [stage, page] = await showJournal(context, calls, { ...wide, permissions: ["clipboard-read", "clipboard-write"] });
    await row(page, "Number withheld").waitFor();
    await openRow(page, "Ann");
    await at(page, "summary").getByText(/^3 calls · .* talked · since \d/).waitFor();
    assert.deepEqual(await page.locator(".history-outcome").evaluateAll((all) => all.map((each) => each.innerText.split(" ")[0])), ["Missed", "Missed", "Answered"]);
    await at(page, "became").getByText(/Talked .*Transferred$/).waitFor();
    await at(page, "copy").first().click();
    await page.waitForFunction(async () => (await navigator.clipboard.readText()) === "4711");
    await at(page, "note").fill("Calls about the roof");
    await at(page, "close").click();
    await stage.until(async () => (await stage.api("GET", "parties/4711")).note === "Calls about the roof");

    for (const [name, words] of [["Team line", /Answered on another phone|Answered by/], ["Reception", /Forwarded here by Hotline, line was busy/]]) {
        await openRow(page, name);
        await at(page, "became").getByText(words).waitFor();
    }
    await openRow(page, "Ann");
    assert.equal(await at(page, "note").inputValue(), "Calls about the roof");

    await at(page, "add-contact").click();
    const dialog = at(page, "contact-dialog");
    await dialog.waitFor();
    assert.deepEqual(await dialog.locator("input").evaluateAll((all) => all.slice(0, 4).map((each) => each.value)), ["Ann", "Müller", "", "4711"]);
    await dialog.getByLabel("Surname").fill("Becker");
    await dialog.getByLabel("Mobile number").fill("+4915112345678");
    await page.keyboard.press("Enter");
    await dialog.waitFor({ state: "detached" });
    await row(page, "Ann Becker").first().waitFor();
    await at(page, "add-contact").getByText("Edit contact").waitFor();
    await at(page, "person").getByText("Mobile", { exact: true }).waitFor();
    assert.deepEqual(stage.browserErrors, []);
});

test("a missed caller is called back through the journal, an emergency number only after a question, and is then dealt with", async (context) => {
    const [stage, page] = await showJournal(context, `${calls}call help from 112 "Help" ; ring help ; giveup help`, wide);
    const dialled = async () => (await stage.api("GET", "calls?list=dialled")).items.map(({ number }) => number);
    await row(page, "Help").locator("button[data-test=call-button]").click();
    await at(page, "dialog").getByText("112 reaches an emergency service").waitFor();
    await page.keyboard.press("Escape");
    await at(page, "dialog").waitFor({ state: "detached" });
    assert.deepEqual((await stage.api("GET", "live-calls")).calls, []);
    await row(page, "Reception").locator("button[data-test=call-button]").click();
    await at(page, "live-call").filter({ hasText: "4720" }).waitFor();
    await at(page, "hang-up").click();
    await at(page, "live-call").waitFor({ state: "detached" });
    await stage.until(async () => (await dialled()).includes("4720"));
    await row(page, "Reception").locator("[data-test=dealt-with]").first().waitFor();
    await page.locator("[data-test=row]:is(.row-dialled, .row-unreached)", { hasText: "Reception" }).waitFor(); // the name that the switch told at the missed call

    // Without call control the browser's telephone program calls.
    await stage.stop(stage.simulator);
    const link = row(page, "Reception").locator("a[data-test=call-button]").first();
    assert.equal(await link.getAttribute("href"), "tel:4720");
});

test("an entry that is marked as new stays so until the user marks it as seen; a person is erased with all calls", async (context) => {
    const [stage, page] = await showJournal(context, calls, wide);
    await row(page, "Number withheld").waitFor();
    await openRow(page, "Ann");
    await stage.missedAre(({ items }) => items.some(({ number, viewed }) => number === "4711" && viewed));
    await at(page, "mark-new").click();
    await stage.missedAre(({ items }) => items.some(({ number, viewed }) => number === "4711" && !viewed));
    await page.reload();
    await at(page, "mark-seen").waitFor();
    await page.waitForTimeout(3500); // longer than a visible call stays new
    await stage.missedAre(({ items }) => items.every(({ number, viewed }) => viewed === (number !== "4711")));
    await at(page, "mark-seen").click();
    await stage.missedAre(({ unviewed }) => unviewed === 0);
    await at(page, "erase").click();
    await at(page, "dialog").getByText("Delete all 3 calls with Ann Müller (4711)?").waitFor();
    await at(page, "confirm").click();
    await row(page, "Ann").first().waitFor({ state: "detached" });
    assert.equal((await stage.api("GET", "parties/4711")).calls, 0);

    // A caller without a number has a page of their calls, too.
    await openRow(page, "Number withheld");
    await at(page, "delete-these").click();
    await at(page, "confirm").click();
    await row(page, "Number withheld").waitFor({ state: "detached" });
    await at(page, "undo").click();
    await row(page, "Number withheld").waitFor();
});

test("what an access key may not do is not offered, and nothing is marked as seen", async (context) => {
    const stage = new Stage(context);
    await stage.plays(calls);
    await stage.serves();
    const token = execFileSync(process.env.CALLJOURNAL, ["tokens", "create", "wall", "--scope", "read", "--data", stage.data], { encoding: "utf8" }).trim();
    await stage.api("PUT", "parties/4711", { note: "Calls about the roof" });
    const page = await stage.opens(wide);
    await page.goto(`${stage.url}?token=${token}`);
    const refused = [];
    page.on("response", (response) => response.status() === 403 && refused.push(response.url()));
    await row(page, "Reception").waitFor();
    await openRow(page, "Ann");
    await at(page, "note-text").getByText("Calls about the roof").waitFor();
    for (const action of ["add-contact", "mark-seen", "mark-new", "delete-call", "erase", "note", "select"]) {
        assert.equal(await at(page, action).count(), 0, action);
    }
    assert.equal(await row(page, "Reception").locator("a[data-test=call-button]").getAttribute("href"), "tel:4720");
    await page.keyboard.press("Delete");
    await at(page, "nav-contacts").click();
    await at(page, "search-contacts").waitFor();
    assert.equal(await at(page, "new-contact").count() + (await at(page, "import").count()), 0);
    await at(page, "nav-settings").click();
    await at(page, "sign-out").waitFor();
    assert.equal(await page.locator(".advanced").count(), 0);
    await page.goto(`${stage.url}#/calls`);
    await row(page, "Reception").waitFor();
    await page.waitForTimeout(4000); // longer than a row must be visible to count as seen
    assert.ok((await stage.api("GET", "lists/missed")).items.every(({ viewed }) => !viewed));
    assert.deepEqual(refused, []);
});

test("a note that was changed elsewhere meanwhile keeps both texts", async (context) => {
    const [stage, page] = await showJournal(context, calls, wide);
    await openRow(page, "Ann");
    await at(page, "note").fill("Owns the ladder");
    await stage.api("PUT", "parties/4711", { note: "Calls about the roof" });
    await at(page, "note").blur();
    await at(page, "person").getByText("changed elsewhere").waitFor();
    assert.equal(await at(page, "note").inputValue(), "Calls about the roof\nOwns the ladder");
    await at(page, "note").focus();
    await at(page, "note").blur();
    await stage.until(async () => (await stage.api("GET", "parties/4711")).note === "Calls about the roof\nOwns the ladder");
});
