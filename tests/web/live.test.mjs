// Calls that ring or are up, and news of missed calls while the page is in the background.

import assert from "node:assert/strict";
import test from "node:test";
import { at, row, setShown, showJournal } from "./harness.mjs";

test("a call that rings is shown with its caller, taken and ended in the page, in German", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { locale: "de-DE", viewport: { width: 390, height: 844 } });
    await at(page, "empty").getByText("Noch keine Anrufe").waitFor();
    await stage.plays('call ann from 4711 "Ann Müller" ; ring ann ; wait 60s');
    const call = at(page, "live-call");
    await call.getByText("ruft an").waitFor();
    await page.waitForFunction(() => document.title === "Ann Müller ruft an – Anrufjournal");
    // A window above the page blocks the page, but not the call.
    await at(page, "nav-contacts").click();
    await at(page, "new-contact").click();
    await at(page, "contact-dialog").locator("[data-test=take-call]").click();
    await page.keyboard.press("Escape");
    await call.getByText("Im Gespräch").waitFor();
    await call.getByRole("button", { name: "Auflegen" }).click();
    await call.waitFor({ state: "detached" });
    await at(page, "nav-calls").click();
    await row(page, "Ann Müller").getByText("Angenommen · 4711").waitFor();
    await page.getByRole("heading", { name: "Heute" }).waitFor();
    assert.deepEqual(stage.browserErrors, []);
});

test("a call that is missed in the background is in the title and, if wanted, in a notification; requests come and go", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { permissions: ["notifications"], viewport: { width: 1440, height: 900 } });
    await page.addInitScript(() => {
        window.shown = [];
        window.Notification = class {
            static permission = "granted";
            static requestPermission = () => Promise.resolve("granted");
            constructor(title, { body }) {
                window.shown.push(`${title}: ${body}`);
            }
        };
    });
    await page.reload();
    const missed = 'call ann from 4711 "Ann" ; ring ann ; giveup ann\n';
    await setShown(page, false);
    await stage.plays(missed);
    await page.waitForFunction(() => document.title === "(1) Missed call from Ann – Call journal");
    assert.deepEqual(await page.evaluate(() => window.shown), [], "off by default");
    await setShown(page, true);
    await page.waitForFunction(() => document.title.endsWith("Calls – Call journal"));
    await stage.missedAre(({ unviewed }) => unviewed === 0);

    await at(page, "nav-settings").click();
    await at(page, "notifications").click();
    await page.locator("[data-test=notifications]:checked").waitFor();
    await setShown(page, false);
    await stage.plays(`${missed}callback 4714 "Dora Lind" because busy\n`);
    await page.waitForFunction(() => window.shown.join() === "Call journal: Missed call from Ann");
    await at(page, "list-requests").filter({ hasText: "1" }).click();
    await at(page, "request").filter({ hasText: "Dora Lind" }).getByText("connected when both lines are free").waitFor();
    await at(page, "request").locator("[data-control=open]").click();
    await at(page, "delete-request").click();
    await at(page, "empty").waitFor();
    await page.evaluate(() => dispatchEvent(new Event("pagehide"))); // ends the time for undo
    await stage.until(async () => (await stage.api("GET", "lists/callbacks")).total === 0);
});
