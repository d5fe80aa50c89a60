// Calls come in while the page is open.

import assert from "node:assert/strict";
import test from "node:test";
import { at, row, setShown, showJournal } from "./harness.mjs";

const evil = "<img src=x onerror=alert(1)>";
const calls = `
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann
call eve from 4713 "${evil}" via 4700 "Hotline" because busy ; ring eve ; giveup eve
wait 1100ms
call ann from 4711 "Ann Müller" ; ring ann ; giveup ann
call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; wait 1100ms ; hangup zoe by caller
`;

test("calls appear, are viewed, merged, searched, opened and deleted without a reload", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { slowness: 10 });
    assert.equal(new URL(page.url()).search, "");
    await page.getByText("No missed calls").waitFor();
    await page.evaluate(() => (window.sameDocument = true));

    await setShown(page, false);
    await stage.plays(calls);
    await row(page, "Ann Müller").filter({ hasText: "2 calls" }).filter({ hasText: "new" }).waitFor();
    await row(page, evil).waitFor();
    assert.equal(await page.locator("img").count(), 0);
    await at(page, "nav-received").filter({ hasText: "1" }).waitFor();

    await setShown(page, true);
    await page.waitForFunction(() => !document.querySelector(".row-new"));
    await stage.missedAre(({ unviewed }) => unviewed === 0);

    // From here on by keyboard only.
    await at(page, "search").focus();
    await page.keyboard.type("MULLER");
    await row(page, evil).waitFor({ state: "detached" });
    assert.equal(await at(page, "row").count(), 1);
    await page.keyboard.press("ControlOrMeta+A");
    await page.keyboard.press("Delete");
    await row(page, evil).waitFor();
    for (const stop of ["delete-several", "select", "open"]) {
        await page.keyboard.press("Tab");
        assert.equal(await page.evaluate(() => document.activeElement.dataset.control ?? document.activeElement.dataset.test), stop);
    }
    await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Enter");
    await at(page, "calls").getByText("Hotline, 4700").waitFor();
    await page.keyboard.press("Escape");

    // A deletion is final after a moment, or when the user leaves the page.
    const gone = page.waitForResponse((each) => each.request().method() === "DELETE");
    await row(page, evil).getByRole("button", { name: "Delete" }).click();
    await gone;
    assert.deepEqual((await stage.api("GET", "lists/missed")).items.map((each) => each.surname || each.firstName), ["Ann Müller"]);
    assert.ok(await page.evaluate(() => window.sameDocument));
    await at(page, "delete-several").click();
    await row(page, "Ann").waitFor({ state: "detached" });
    await page.goto("about:blank");
    await stage.missedAre(({ total }) => total === 0);
    assert.deepEqual(stage.browserErrors, []);
});

test("an open entry is viewed with each of its calls once its window is shown, and stays so", async (context) => {
    const ann = 'call ann from 4711 "Ann" ; ring ann ; giveup ann';
    const [stage, page] = await showJournal(context, ann, { viewport: { width: 360, height: 640 } });
    await setShown(page, false);
    await row(page, "Ann").locator(".row-entry").click();
    await stage.plays(ann);
    await at(page, "details").getByText("2 calls").waitFor();
    assert.equal((await stage.api("GET", "lists/missed")).unviewed, 1);

    // The list is read before it is viewed, but the response arrives afterwards.
    let arrive;
    const read = new Promise((taken) => page.route("**/lists/missed", async (route) => {
        const response = await route.fetch();
        taken();
        await new Promise((late) => (arrive = late));
        await route.fulfill({ response });
    }, { times: 1 }));
    await stage.api("PUT", "settings", { "delete-missed-when-called": "1" }); // which makes every page read its lists
    await read;
    await setShown(page, true);
    await stage.missedAre(({ unviewed }) => unviewed === 0);
    await stage.plays('call zoe from 4712 "Zoë" ; ring zoe ; answer zoe ; hangup zoe by caller');
    await at(page, "nav-received").filter({ hasText: "1" }).waitFor();
    const old = page.waitForResponse("**/lists/missed");
    arrive();
    await (await old).finished();
    await page.evaluate(() => new Promise((shown) => setTimeout(() => requestAnimationFrame(shown), 50)));
    await page.waitForFunction(() => document.title === "Missed – call journal");

    await stage.plays(ann);
    await at(page, "details").getByText("3 calls").waitFor();
    await stage.missedAre(({ unviewed }) => unviewed === 0);
});

test("the page reconnects after the connection was lost", async (context) => {
    const [stage, page] = await showJournal(context, "status normal");
    await at(page, "line-state").filter({ hasText: "no call up" }).waitFor();
    await page.evaluate(() => (window.sameDocument = true));
    stage.running.delete(stage.server);
    stage.server.kill("SIGKILL");
    await at(page, "offline").waitFor();

    await stage.plays('call bob from 4714 "Bob" ; ring bob ; giveup bob ; call up from 4715 ; ring up ; answer up');
    await stage.serves();
    await row(page, "Bob").waitFor();
    await at(page, "offline").waitFor({ state: "detached" });
    await at(page, "line-state").filter({ hasText: "1 call up" }).waitFor();
    await stage.stop(stage.simulator);
    await at(page, "line-state").filter({ hasText: "The switch is not connected" }).waitFor();
    await stage.plays('call cleo from 4716 "Cleo" ; ring cleo ; giveup cleo');
    await row(page, "Cleo").waitFor();
    assert.ok(await page.evaluate(() => window.sameDocument));
});
