// Layout and accessibility of every view: widths, themes and languages are spread over the cases; tools/page-shots has the full cross.

import assert from "node:assert/strict";
import test from "node:test";
import { at, fits, isAccessible, row, showHistory } from "./harness.mjs";

const calls = `
call ann from +4930123456789012 "Wolfeschlegelsteinhausenbergerdorff-Featherstonehaugh" via 4700 "The Hotline of the Company" ; ring ann ; giveup ann
call eve from 4713 "Eve" ; ring eve ; giveup eve ; wait 1100ms ; call eve from 4713 "Eve" ; ring eve ; giveup eve
callback 4714 "Dora Lind" because busy
call zoe from 4712 "Zoë" ; ring zoe
`;
const phone = { viewport: { width: 390, height: 844 } };
const desk = { viewport: { width: 1440, height: 900 } };
const light = { colorScheme: "light" };
const dark = { colorScheme: "dark" };
const en = { locale: "en-GB" };
const de = { locale: "de-DE" };

const person = (page) => at(page, "note").waitFor();
const views = [
    // name, address, what is done or waited for, and the looks in which axe examines it
    ["calls", "#/calls", (page) => row(page, "Eve").waitFor(), [{ ...phone, ...light, ...en }, { ...desk, ...dark, ...de }]],
    ["an expanded row", "#/calls", (page) => at(page, "expand").first().click(), [{ ...phone, ...dark, ...de }, { ...desk, ...light, ...en }]],
    ["filters", "#/calls?since=7d&min-duration=60", (page) => at(page, "filters").click(), [{ ...phone, ...dark, ...en }, { ...desk, ...light, ...de }]],
    ["the selection", "#/calls", async (page) => { await at(page, "select").click(); await page.getByRole("checkbox").first().click(); }, [{ ...phone, ...light, ...de }, { ...desk, ...dark, ...en }]],
    ["requests", "#/calls?list=requests", (page) => at(page, "request").waitFor(), [{ ...phone, ...dark, ...de }, { ...desk, ...light, ...en }]],
    ["no result", "#/calls?search=qqq", (page) => at(page, "empty").waitFor(), [{ ...phone, ...light, ...de }]],
    ["a person", "#/calls?person=4713", person, [{ ...phone, ...light, ...de }, { ...desk, ...dark, ...en }]],
    ["the question", "#/calls?person=4713", async (page) => { await person(page); await at(page, "erase").click(); }, [{ ...phone, ...dark, ...en }]],
    ["the contact form", "#/calls?person=4713", async (page) => { await person(page); await at(page, "add-contact").click(); await at(page, "contact-dialog").waitFor(); }, [{ ...phone, ...dark, ...de }, { ...desk, ...light, ...en }]],
    ["contacts", "#/contacts", (page) => at(page, "contact").first().waitFor(), [{ ...phone, ...light, ...en }, { ...desk, ...dark, ...de }]],
    ["statistics", "#/statistics", async (page) => { await page.locator(".u-legend").first().waitFor(); await page.locator(".card-table summary").first().click(); }, [{ ...phone, ...dark, ...de }, { ...desk, ...light, ...en }]],
    ["settings", "#/settings", async (page) => { await at(page, "missed-logging").waitFor(); await page.locator("[data-test=advanced] summary").click(); await page.locator(".phone-setting").first().waitFor(); }, [{ ...phone, ...light, ...de }, { ...desk, ...dark, ...en }]],
];

test("every view fits its window and can be used by everybody, in both widths, themes and languages", async (context) => {
    const [stage, first] = await showHistory(context, ["--calls", 400, "--parties", 40, "--days", 30], calls);
    await first.close();
    await stage.api("POST", "contacts", { firstName: "Eve", surname: "Evans", company: "Evans Ltd", office: "4713", mobile: "+4915112345678" });
    await stage.until(async () => (await stage.api("GET", "live-calls")).calls.length === 1);
    for (const look of [phone, desk].flatMap((size) => [light, dark].flatMap((theme) => [en, de].map((language) => ({ ...size, ...theme, ...language }))))) {
        const shape = JSON.stringify(look);
        const cases = views.filter(([, , , looks]) => looks.some((each) => JSON.stringify(each) === shape));
        const page = cases.length > 0 && (await stage.opens(look));
        for (const [name, address, act] of cases) {
            await page.goto("about:blank");
            await page.goto(`${stage.url}${address}`);
            await act(page);
            await at(page, "live-call").last().waitFor();
            await isAccessible(page, `${name}, ${shape}`);
        }
        await page?.close?.();
    }
    assert.deepEqual(stage.browserErrors, []);
});

test("on a telephone the first call begins above 160 pixels, and every view fits a font of twice the size and a window at 400 %", async (context) => {
    const [stage, page] = await showHistory(context, ["--calls", 100, "--parties", 20, "--days", 20], "status normal", phone);
    const box = await at(page, "row").first().boundingBox();
    assert.ok(box.y < 160, `${box.y}`);
    for (const look of [{ ...phone, fontSize: 32 }, { viewport: { width: 320, height: 256 } }]) {
        const narrow = await stage.opens(look);
        for (const view of ["calls", "contacts", "settings"]) {
            await at(narrow, `nav-${view}`).click();
            await at(narrow, `view-${view}`).locator("[data-test=row], [data-test=empty], .setting").first().waitFor();
            await fits(narrow, `${view}, ${JSON.stringify(look)}`);
        }
        await narrow.close();
    }
});
