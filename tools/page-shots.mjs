// tools/page-shots DIRECTORY [WORD...]: pictures of every view of the page in each width, theme and language, of a generated history with
// contacts, a note, call-back requests and a ringing call. With words, only pictures whose names contain them all (tools/page-shots DIR 390 dark).
// The program is $CALLJOURNAL, else build/dev/bin/calljournal; the browser is $CHROMIUM, else chromium.

import { execFileSync } from "node:child_process";
import * as fs from "node:fs";
import * as path from "node:path";
import { Stage, at, row } from "../tests/web/harness.mjs";

const root = path.join(path.dirname(process.argv[1]), "..");
const [directory, ...words] = process.argv.slice(2);
if (!directory) {
    console.error("usage: tools/page-shots DIRECTORY [WORD...]");
    process.exit(2);
}
process.env.CALLJOURNAL ??= path.join(root, "build/dev/bin/calljournal");
process.env.CHROMIUM ??= execFileSync("which", ["chromium"], { encoding: "utf8" }).trim();

const scenario = `
callback 4713 "Façade & Söhne" because busy
callback 4715 "Egon Lind"
call zoe from +4915550100123 "Zoë Økland" ; ring zoe ; answer zoe ; wait 1s ; hangup zoe by caller
dial bob to 4712 "Bob Fischer" ; ring bob ; connect bob ; wait 1s ; hangup bob
call secret from anonymous ; ring secret ; giveup secret
call ann from 4711 "Ann Müller" ; ring ann ; answer ann ; wait 1s
consult bob from ann to 4712 "Bob Fischer" ; connect bob ; wait 1s ; transfer ann to bob ; wait 1s ; hangup ann
call team from 4730 "Team line" ; ring team ; elsewhere team
call office from 4720 "Reception" via 4700 "Hotline" because busy ; ring office ; giveup office
repeat 3
  call ann from 4711 "Ann Müller" ; ring ann ; wait 1s ; giveup ann ; wait 1s
end
wait 3s
call now from +493055501990 "José Álvarez" ; ring now
`;
const contacts = [
    { firstName: "Ann", surname: "Müller", company: "Müller Bau GmbH", office: "4711", mobile: "+4915112345678", email: "ann@example.org" },
    { firstName: "Bob", surname: "Fischer", company: "", office: "4712" },
    { firstName: "", surname: "", company: "Façade & Söhne", office: "4713" },
    { firstName: "Zoë", surname: "Økland", company: "Fjord AS", mobile: "+4915550100123" },
];

/** The views: how to reach each, from its address on, while the call of `phase` rings (the default), is up, or is over. */
const views = {
    calls: { address: "#/calls" },
    expanded: { address: "#/calls", act: (page) => at(page, "expand").first().click() },
    missed: { address: "#/calls?list=missed" },
    search: { address: "#/calls?search=m%C3%BCller", ready: (page) => at(page, "row").nth(2).waitFor() },
    filters: { address: "#/calls?since=7d&min-duration=60", act: (page) => at(page, "filters").click() },
    chips: { address: "#/calls?since=7d&direction=incoming&min-duration=60" },
    jump: { address: `#/calls?at=${new Date(Date.now() - 9 * 86_400_000).toISOString().slice(0, 10)}` },
    selection: { address: "#/calls", act: async (page) => { await at(page, "select").click(); await page.getByRole("checkbox").nth(1).click(); await page.getByRole("checkbox").nth(2).click(); } },
    undo: { address: "#/calls", act: async (page) => { await row(page, "Team line").locator("[data-control=open]").focus(); await page.keyboard.press("Delete"); await at(page, "undo").waitFor(); await at(page, "undo").hover(); }, after: (page) => at(page, "undo").click() },
    request: { address: "#/calls?list=requests&person=4713", ready: (page) => at(page, "person-request").waitFor() },
    requests: { address: "#/calls?list=requests", ready: (page) => at(page, "request").first().waitFor() },
    "nothing-found": { address: "#/calls?search=qqq", ready: (page) => at(page, "empty").waitFor() },
    person: { address: "#/calls?person=TOP", ready: (page) => at(page, "note").waitFor() },
    "person-transfer": { address: "#/calls?person=4711", ready: (page) => at(page, "note").waitFor() },
    "person-unknown": { address: "#/calls?list=missed&person=4720", ready: (page) => at(page, "note").waitFor() },
    withheld: { address: "#/calls", act: (page) => page.locator("[data-test=row]:not(:has([data-test=call-button])) [data-control=open]").first().click() },
    erase: { address: "#/calls?person=4711", ready: (page) => at(page, "note").waitFor(), act: (page) => at(page, "erase").click() },
    contact: { address: "#/calls?person=4711", ready: (page) => at(page, "note").waitFor(), act: (page) => at(page, "add-contact").click() },
    contacts: { address: "#/contacts", ready: (page) => at(page, "contact").first().waitFor() },
    statistics: { address: "#/statistics", ready: (page) => page.locator(".u-legend").first().waitFor(), whole: true },
    "table-opened": { address: "#/statistics", ready: (page) => page.locator(".u-legend").first().waitFor(), act: (page) => page.locator(".card-table summary").first().click(), whole: true },
    settings: { address: "#/settings", ready: (page) => at(page, "missed-logging").waitFor(), whole: true },
    advanced: { address: "#/settings", act: async (page) => { await page.locator("[data-test=advanced] summary").click(); await page.locator(".phone-setting").first().waitFor(); }, whole: true },
    "keyboard-shortcuts": { address: "#/settings", ready: (page) => at(page, "missed-logging").waitFor(), act: (page) => at(page, "keys").locator("summary").click(), whole: true },
    "journal-off": { address: "#/settings", ready: (page) => at(page, "missed-logging").waitFor(), act: (page) => at(page, "call-log-enabled").click() },
    "call-up": { address: "#/calls", phase: "up" },
    rest: { address: "#/calls", phase: "over" },
    "rest-person": { address: "#/calls?person=TOP", phase: "over", ready: (page) => at(page, "note").waitFor() },
    "rest-statistics": { address: "#/statistics", phase: "over", ready: (page) => page.locator(".u-legend").first().waitFor() },
    "read-only": { address: "#/calls?person=4711", phase: "over", token: "read", ready: (page) => page.locator(".person-head").waitFor() },
    "connection-lost": { address: "#/calls", phase: "over", act: async (page) => { await page.context().setOffline(true); await page.locator(".notice").first().waitFor(); }, after: (page) => page.context().setOffline(false) },
    "sign-in": { address: "#/calls", isOut: true, ready: (page) => at(page, "sign-in").waitFor() },
};

/** Makes the window as high as the view, so that the picture has all of it. */
async function showWhole(page, { width, height }) {
    const needed = await page.evaluate(() => [...document.querySelectorAll(".view")].reduce((most, each) => Math.max(most, each.scrollHeight), 0));
    const live = await page.evaluate(() => document.querySelector(".live")?.offsetHeight ?? 0);
    await page.setViewportSize({ width, height: Math.max(height, needed + live + 70) });
}

/** Every picture begins with the same calls that are new, and at the same time. */
async function shoot(stage, { top, unseen, now, reading, phase }, width, theme, language) {
    const viewport = { width, height: width < 600 ? 844 : 900 };
    const page = await stage.opens({ viewport, colorScheme: theme, locale: language === "de" ? "de-DE" : "en-GB", timezoneId: "Europe/Berlin" });
    await page.clock.setFixedTime(now);
    for (const [name, { address, ready, act, after, whole, isOut, token, phase: wanted = "ringing" }] of Object.entries(views)) {
        const file = `${name}-${width}-${theme}-${language}.png`;
        if (wanted !== phase || !words.every((word) => file.includes(word))) {
            continue;
        }
        await stage.request("POST", "lists/missed/unviewed", { entryIds: unseen });
        if (isOut) {
            await page.context().clearCookies();
        }
        if (token) {
            await page.goto(`${stage.url}?token=${reading}`);
        }
        await page.goto("about:blank");
        await page.goto(`${stage.url}${address.replace("TOP", encodeURIComponent(top.key))}`);
        await (ready ?? ((each) => (address.includes("#/calls") ? at(each, "row") : each.locator("main")).first().waitFor()))(page);
        await act?.(page);
        await page.waitForTimeout(500);
        if (whole) {
            await showWhole(page, viewport);
            await page.waitForTimeout(200);
        }
        await page.screenshot({ path: path.join(directory, file), animations: "disabled" });
        await after?.(page);
        if (token) {
            await page.goto(`${stage.url}?token=${stage.token}`);
        }
        await page.setViewportSize(viewport);
    }
    await page.context().close();
}

const cleanups = [];
const stage = new Stage({ after: (does) => cleanups.push(does) });
try {
    fs.mkdirSync(directory, { recursive: true });
    execFileSync(path.join(root, "tools/make-history"), [stage.data, "--calls", "900", "--parties", "60", "--days", "90", "--single-names", "--until", new Date(Date.now() - 7_200_000).toISOString().slice(0, 19)]);
    await stage.plays(scenario);
    await stage.serves();
    for (const contact of contacts) {
        await stage.api("POST", "contacts", { firstName: "", surname: "", company: "", office: "", mobile: "", private: "", office2: "", email: "", ...contact });
    }
    // The party with most calls.
    const top = (await stage.api("GET", "statistics")).topParties.find(({ key }) => key.startsWith("+"));
    const [firstName, ...surname] = top.displayName.split(" ");
    await stage.api("POST", "contacts", { firstName, surname: surname.join(" "), company: "Elektro Nord", office: top.key, mobile: "+4915112345679" });
    await stage.api("PUT", `parties/${encodeURIComponent(top.key)}`, { note: "Sends the plans on Thursday. Ask for the second key." });
    await stage.api("PUT", "parties/4711", { note: "Calls about the roof. Prefers the mobile after 16:00." });
    await stage.until(async () => (await stage.api("GET", "live-calls")).calls.some(({ displayName }) => displayName.startsWith("José")));
    const unseen = (await stage.api("GET", "lists/missed?limit=1000")).items.filter(({ viewed }) => !viewed).map(({ uniqueId }) => uniqueId);
    const now = Date.now();
    const reading = (await stage.api("POST", "tokens", { name: "wall board", scope: "read" })).token;
    const { callId } = (await stage.api("GET", "live-calls")).calls.find(({ displayName }) => displayName.startsWith("José"));
    const begins = {
        ringing: () => undefined,
        up: () => stage.request("POST", ["live-calls", callId, "answer"].join("/")),
        over: () => stage.request("DELETE", `live-calls/${callId}`),
    };
    for (const [phase, begin] of Object.entries(begins)) {
        await begin();
        for (const width of [390, 1440]) {
            for (const theme of ["light", "dark"]) {
                for (const language of ["en", "de"]) {
                    await shoot(stage, { top, unseen, now, reading, phase }, width, theme, language);
                }
            }
        }
    }
    if (stage.browserErrors.length > 0) {
        console.error(stage.browserErrors.join("\n"));
    }
} finally {
    for (const does of cleanups) {
        await does();
    }
}
