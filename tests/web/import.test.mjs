// Imports of contact files, by keyboard.

import assert from "node:assert/strict";
import test from "node:test";
import { at, isAccessible, showJournal } from "./harness.mjs";

const evil = "<img src=x onerror=alert(1)>";
const card = (...lines) => ["BEGIN:VCARD", "VERSION:3.0", ...lines, "END:VCARD", ""].join("\r\n");
const photo = `PHOTO;ENCODING=b;TYPE=JPEG:${"A".repeat(60)}${`\r\n ${"A".repeat(74)}`.repeat(2000)}`;
const numbers = Array.from({ length: 1000 }, (_, index) => `+4930${1000 + index}`);
const cards = [
    card(`N:${evil};Mallory`, photo, "TEL;TYPE=work:4711"), // 2006 lines
    ...numbers.map((number, index) => card(`FN:Person ${index}`, `TEL:${number}`)), // 5 lines each
    card("TEL:4712"),
    card("FN:Long", `TITLE:${"x".repeat(70_000)}`),
    card("FN:Zed"),
].join("");
// In a legacy code page, with a cell of several lines and quotation marks inside unquoted cells.
const rows = ['\r\nSurname;Office;"Home\nTown"', '"Ä;""B""";1;"two\n\nlines"', ...numbers.map((number) => `5" pipe;${number};${"y".repeat(80)}`), ";;", "Öz;2"];

test("a file is imported in parts, by keyboard, and its faults are reported with their lines", async (context) => {
    const [stage, page] = await showJournal(context, "status normal", { viewport: { width: 360, height: 640 } });
    let file;
    page.on("filechooser", (chooser) => chooser.setFiles(file));
    const imports = (name, text) => {
        file = { name, mimeType: "", buffer: Buffer.from(text, "latin1") };
        return page.keyboard.press("Enter");
    };
    await at(page, "nav-contacts").focus();
    await page.keyboard.press("Enter");
    await page.getByText("import your address book").waitFor();
    await page.getByLabel("Search contacts").focus();
    await page.keyboard.press("Tab");
    await page.keyboard.press("Tab");
    const result = at(page, "import-result");
    let requests = 0;
    page.on("request", (each) => (requests += each.url().endsWith("/import")));

    await imports("book.vcf", cards);
    await result.getByText("book.vcf: 1,002 contacts imported, 2 skipped.").waitFor();
    await page.getByText("1,002 contacts, the first 200").waitFor();
    assert.ok(requests > 1);
    await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    assert.deepEqual(await page.locator(".import-notes li").allInnerTexts(), ["Line 7007: skipped: it has no name", "Line 7011: skipped: it is too long"]);
    await isAccessible(page, "an import");
    await page.keyboard.press("Shift+Tab");

    await imports("book.csv", rows.join("\n"));
    await result.getByText("book.csv: 1,002 contacts imported, 1 skipped.").waitFor();
    assert.deepEqual((await page.locator(".import-notes li").allTextContents()).map((each) => each.split(":")[0]), ["Line 4", "Line 1007"]);
    assert.equal((await stage.api("GET", `contacts?search=${encodeURIComponent('Ä;"B"')}`)).total, 1);

    assert.deepEqual(stage.browserErrors, []);

    // The connection fails during the import; the second import completes it.
    await page.route("**/contacts/import", (route) => route.abort(), { times: 1 });
    await page.route("**/contacts/import", (route) => route.continue(), { times: 1 });
    await imports("book.vcf", cards);
    await result.getByText(/stopped: .* The journal has imported \d+ of 1,003 contacts/).waitFor();
    await imports("book.vcf", cards);
    await result.getByText("(0 added, 0 changed, 1002 unchanged)").waitFor();
    assert.equal((await stage.api("GET", "contacts")).total, 2004);
    await imports("book.vcf", "x".repeat(70_000));
    await result.getByText("was not imported: no card begins in it").waitFor();

    await page.getByLabel("Search contacts").fill("mallory");
    await at(page, "contact").filter({ hasText: `Mallory ${evil}` }).waitFor();
    assert.equal(await page.locator("img").count(), 0);
});
