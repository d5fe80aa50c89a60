// Contacts and their import, settings, signing in and out.

import assert from "node:assert/strict";
import http from "node:http";
import test from "node:test";
import { at, isAccessible, row, showJournal, withClockStopped } from "./harness.mjs";

const evil = "<img src=x onerror=alert(1)>";
const card = (...lines) => ["BEGIN:VCARD", "VERSION:3.0", ...lines, "END:VCARD", ""].join("\r\n");
const photo = `PHOTO;ENCODING=b;TYPE=JPEG:${"A".repeat(60)}${`\r\n ${"A".repeat(74)}`.repeat(2000)}`;
const numbers = Array.from({ length: 1000 }, (_, index) => `+4930${1000 + index}`);
const cards = [
    card(`N:${evil};Mallory`, photo, "TEL;TYPE=work:4711"), // 2006 lines
    ...numbers.map((number, index) => card(`FN:Person ${index}`, `TEL:${number}`)), // 5 lines each
    card("TEL:4712"),
    card("FN:Zed"),
].join("");
// In a legacy code page, with a cell of several lines and quotation marks inside unquoted cells.
const table = ['\r\nSurname;Office;"Home\nTown"', '"Ä;""B""";1;"two\n\nlines"', ...numbers.map((number) => `5" pipe;${number};${"y".repeat(80)}`), ";;", "Öz;2"];

test("files of contacts are imported by keyboard, and their faults are reported with their lines", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { viewport: { width: 390, height: 844 } });
    let file;
    page.on("filechooser", (chooser) => chooser.setFiles(file));
    const imports = async (name, text) => {
        file = { name, mimeType: "", buffer: Buffer.from(text, "latin1") };
        await at(page, "import").press("Enter");
    };
    await at(page, "nav-contacts").press("Enter");
    await at(page, "empty").getByText("import your address book").waitFor();
    const result = at(page, "import-result");
    await imports("book.vcf", cards);
    await result.getByText("book.vcf: 1,002 contacts imported, 1 skipped.").waitFor();
    await at(page, "contact-count").getByText("1,002 contacts, the first 200").waitFor();
    await page.locator(".import-notes summary").press("Enter");
    assert.deepEqual(await page.locator(".import-notes li").allInnerTexts(), ["Line 7007: skipped: it has no name"]);
    await isAccessible(page, "an import");

    await imports("book.csv", table.join("\n"));
    await result.getByText("book.csv: 1,002 contacts imported, 1 skipped.").waitFor();
    assert.equal((await stage.api("GET", `contacts?search=${encodeURIComponent('Ä;"B"')}`)).total, 1);
    assert.deepEqual(stage.browserErrors, []);

    await page.route("**/contacts/import", (route) => route.abort(), { times: 1 });
    await imports("book.vcf", cards);
    await result.getByText(/was not imported: .* Import the file again/).waitFor();
    await imports("book.vcf", cards);
    await result.getByText("0 added, 0 changed, 1002 unchanged.").waitFor();
    await imports("book.txt", cards);
    await result.getByText("only files that end in .vcf or .csv").waitFor();
    await at(page, "search-contacts").fill("mallory");
    await at(page, "contact").filter({ hasText: `Mallory ${evil}` }).waitFor();
    assert.equal(await page.locator("img").count(), 0);
});

test("contacts are changed and deleted with undo, refusals are explained, and a dialog that is closed still saves", async (context) => {
    const [stage, page] = await showJournal(context, 'call eve from 4713 "Eve" ; ring eve ; giveup eve');
    const dialog = at(page, "contact-dialog");
    await at(page, "nav-contacts").click();
    await at(page, "new-contact").click();
    await page.keyboard.press("Enter");
    await dialog.getByText("Not saved: a contact needs a name, a company or a number").waitFor();
    await dialog.getByLabel("Surname").fill("Evans");
    await dialog.getByLabel("Work number", { exact: true }).fill("4713");
    await dialog.locator("form").evaluate((form) => [form.requestSubmit(), form.requestSubmit()]);
    await dialog.waitFor({ state: "detached" });
    assert.equal((await stage.api("GET", "contacts")).total, 1);
    await at(page, "contact").click();
    await dialog.getByLabel("Company").fill("Evans Ltd");
    let save;
    const sent = page.waitForRequest((each) => each.method() === "PUT");
    await page.route("**/contacts/*", (route) => {
        save = () => route.continue();
    }, { times: 1 });
    await page.keyboard.press("Enter");
    await sent;
    await stage.until(() => save);
    await page.keyboard.press("Escape");
    await dialog.waitFor({ state: "detached" });
    await save();
    await at(page, "contact").filter({ hasText: "Evans Ltd · 4713" }).click();
    await withClockStopped(page, async () => {
        await dialog.getByRole("button", { name: "Delete" }).click();
        await at(page, "empty").waitFor();
        await at(page, "undo").click();
    });
    await at(page, "contact").click();
    await dialog.getByRole("button", { name: "Delete" }).click();
    await page.locator("[type=search]:focus").waitFor();
    const gone = page.waitForResponse((each) => each.request().method() === "DELETE" && each.status() === 204);
    await page.evaluate(() => dispatchEvent(new Event("pagehide"))); // ends the time for undo
    await gone;
    assert.deepEqual(stage.browserErrors.filter((each) => !each.includes("422")), []);
});

test("settings follow other clients and are changed once; the language is kept; signing out and in", async (context) => {
    const [stage, page] = await showJournal(context, 'call eve from 4713 "Eve" ; ring eve ; giveup eve', { viewport: { width: 1440, height: 900 } });
    await at(page, "nav-settings").click();
    await page.locator("[data-test=missed-logging]:checked").waitFor();
    await stage.api("PUT", "settings", { "missed-logging": "1" });
    await page.locator("[data-test=missed-logging]:not(:checked)").waitFor();
    let changes = 0;
    page.on("request", (each) => (changes += each.method() === "PUT"));
    await at(page, "missed-logging").evaluate((box) => [box.click(), box.click()]);
    await page.locator("[data-test=missed-logging]:checked").waitFor();
    assert.equal(changes, 1, "a second press while the first one is under way");
    await page.locator("[data-test=advanced] summary").click();
    await at(page, "phone-server-based-features").fill("true");
    await at(page, "phone-server-based-features").press("Enter");
    await stage.until(async () => (await stage.api("GET", "management/server-based-features")).value === "true");
    await at(page, "call-log-enabled").click();
    await at(page, "dialog").getByText("This cannot be undone").waitFor();
    await page.keyboard.press("Escape");
    assert.equal((await stage.api("GET", "settings"))["call-log-enabled"], "true");
    await at(page, "language").selectOption("de");
    await page.reload();
    await page.getByRole("heading", { name: "Einstellungen" }).waitFor();
    assert.equal(await page.evaluate(() => document.documentElement.lang), "de");

    await at(page, "sign-out").click();
    await at(page, "sign-in").waitFor();
    await page.reload();
    for (const token of ["wrong", stage.token]) {
        await page.locator("[type=password]:focus").fill(token);
        await page.keyboard.press("Enter");
        await (token === "wrong" ? page.getByText("Das ist nicht der Zugangsschlüssel") : at(page, "view-settings")).waitFor();
    }
    await at(page, "list-all").click();
    await row(page, "Eve").waitFor();
    await page.context().clearCookies();
    await page.goto(`${stage.url}?token=wrong`);
    await page.getByText("Das ist nicht der Zugangsschlüssel").waitFor();
    assert.equal(new URL(page.url()).search, "");
});

test("the page works under a path of a proxy: signing in, requests and events", async (context) => {
    const [stage, page] = await showJournal(context, "status normal");
    const { hostname, port } = new URL(stage.url);
    const proxy = http.createServer((request, response) => {
        const path = /^\/journal(\/.*)$/.exec(request.url)?.[1];
        if (!path) {
            response.writeHead(404).end();
            return;
        }
        const onward = http.request({ hostname, port, path, method: request.method, headers: request.headers }, (reply) => {
            response.writeHead(reply.statusCode, reply.headers);
            reply.pipe(response);
        });
        onward.on("error", () => response.destroy());
        response.on("close", () => onward.destroy());
        request.pipe(onward);
    });
    await new Promise((listening) => proxy.listen(0, "127.0.0.1", listening));
    context.after(() => proxy.closeAllConnections() ?? proxy.close());
    await page.context().clearCookies();
    await page.goto(`http://127.0.0.1:${proxy.address().port}/journal/`);
    await page.locator("[type=password]:focus").fill(stage.token);
    await page.keyboard.press("Enter");
    await at(page, "empty").waitFor();
    await stage.plays('call eve from 4713 "Eve" ; ring eve ; giveup eve');
    await row(page, "Eve").waitFor();
    await at(page, "nav-statistics").click();
    await at(page, "totals").waitFor();
    await page.reload();
    await at(page, "totals").waitFor();
});
