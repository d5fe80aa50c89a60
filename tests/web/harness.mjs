// Starts the program and a browser for the tests of the page. Tests wait for events, at most `limit` ms.

import assert from "node:assert/strict";
import { execFileSync, spawn } from "node:child_process";
import { once } from "node:events";
import * as fs from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";

const packages = createRequire(new URL("../../web/package.json", import.meta.url));
const { chromium } = packages("playwright-core");
const axeSource = fs.readFileSync(packages.resolve("axe-core/axe.min.js"), "utf8");
const limit = 40_000; // generous: a sanitizer and a busy machine make everything slow

/** A journal, its switch and a browser that shows the page. `test` is node's test context; all processes end with it. */
export class Stage {
    data = fs.mkdtempSync(`${tmpdir()}/cjpage`);
    running = new Set();
    browserErrors = [];

    constructor(test) {
        test.after(async () => {
            await this.browser?.close();
            await Promise.all([...this.running].map((each) => this.stop(each)));
            fs.rmSync(this.data, { recursive: true });
        });
    }

    /** Starts the program. Returns the process and the match of the pattern's group in its output. */
    async start(pattern, ...args) {
        const program = spawn(process.env.CALLJOURNAL, args, { stdio: ["ignore", "pipe", "pipe"] });
        this.running.add(program);
        program.log = "";
        program.stderr.on("data", (text) => (program.log += text));
        for await (const line of createInterface({ input: program.stdout })) {
            const found = pattern.exec(line);
            if (found) {
                return [program, found[1]];
            }
        }
        throw new Error(`calljournal ${args.join(" ")} did not print ${pattern}, but:\n${program.log}`);
    }

    async stop(program) {
        this.running.delete(program);
        const ended = once(program, "close");
        program.kill("SIGTERM");
        if ((await ended)[0] !== 0) {
            throw new Error(`calljournal failed:\n${program.log}`);
        }
    }

    /** Starts a switch that plays these calls and replaces the previous one; the journal reconnects to it. */
    async plays(calls) {
        if (this.running.has(this.simulator)) {
            await this.stop(this.simulator);
        }
        const file = `${this.data}/calls.txt`;
        fs.writeFileSync(file, calls);
        [this.simulator, this.address] = await this.start(
            /^switch listens on (\S+)$/, "switch", "--scenario", file, "--listen", this.address ?? "127.0.0.1:0");
    }

    /** Starts the server; a second start uses the same address. */
    async serves(...options) {
        const listen = this.url ? new URL(this.url).host : "127.0.0.1:0";
        [this.server, this.url] = await this.start(
            /page and API (\S+)$/, "serve", "--data", this.data, "--switch", this.address, "--listen", listen, ...options);
        this.token = fs.readFileSync(`${this.data}/api-token`, "utf8").trim();
    }

    /** Opens the page. With `slowness` the browser is that many times slower, which shows updates that are too late for the next key. */
    async opens({ fontSize, slowness, address, ...options } = {}) {
        this.browser ??= await chromium.launch({ executablePath: process.env.CHROMIUM });
        const page = await this.browser.newPage({ timezoneId: "Asia/Tokyo", locale: "en-GB", ...options });
        page.setDefaultTimeout(limit);
        const tools = await page.context().newCDPSession(page);
        if (fontSize) {
            await tools.send("Page.setFontSizes", { fontSizes: { standard: fontSize } });
        }
        if (slowness) {
            await tools.send("Emulation.setCPUThrottlingRate", { rate: slowness });
        }
        page.on("pageerror", (error) => this.browserErrors.push(String(error)));
        page.on("console", (message) => message.type() === "error" && this.browserErrors.push(message.text()));
        await page.goto(`${this.url}?token=${this.token}`);
        await page.locator("main").waitFor();
        if (address) {
            await page.goto(`${this.url}${address}`);
        }
        return page;
    }

    request(method, target, body) {
        const headers = { Authorization: `Bearer ${this.token}` };
        return fetch(`${this.url}api/v1/${target}`, { method, headers, body: body && JSON.stringify(body) });
    }

    async api(method, target, body) {
        return (await this.request(method, target, body)).json();
    }

    /** Asks again and again until the predicate holds. */
    async until(holds) {
        const end = Date.now() + limit;
        while (!(await holds())) {
            assert.ok(Date.now() < end, `never: ${holds}`);
            await new Promise((later) => setTimeout(later, 50));
        }
    }

    /** Polls the missed calls until the predicate holds. */
    missedAre(expected) {
        return this.until(async () => expected(await this.api("GET", "lists/missed")));
    }
}

/** A stage with a switch that plays these calls and with the server; and the page of it, opened with these options. */
export async function showJournal(test, calls, options) {
    const stage = new Stage(test);
    await stage.plays(calls);
    await stage.serves();
    return [stage, await stage.opens(options)];
}

export const at = (page, name) => page.locator(`[data-test="${name}"]`);
export const row = (page, text) => at(page, "row").filter({ hasText: text });

/** Opens the person of the first row with this text. */
export const openRow = (page, text) => row(page, text).first().locator("[data-control=open]").click();

/** Waits until the list shows this number of rows. */
export const rows = (page, count) => page.waitForFunction((wanted) => document.querySelectorAll("[data-test=row]").length === wanted, count);

/** Starts the program with a generated history: `history` are options of tools/make-history. */
export async function showHistory(test, history, calls, options) {
    const stage = new Stage(test);
    execFileSync(fileURLToPath(new URL("../../tools/make-history", import.meta.url)), [stage.data, ...history.map(String)], { stdio: "ignore" });
    await stage.plays(calls);
    await stage.serves();
    return [stage, await stage.opens(options)];
}

/** Stops the page's clock, so that the time for undo does not end. */
export async function withClockStopped(page, does) {
    await page.clock.install();
    await page.clock.pauseAt((await page.evaluate(() => Date.now())) + 60_000);
    await does();
    await page.clock.resume();
}

/** Sets the visibility of the window; a headless browser reports every window as visible. */
export async function setShown(page, shown) {
    await page.evaluate((state) => {
        Object.defineProperty(document, "visibilityState", { value: state, configurable: true });
        document.dispatchEvent(new Event("visibilitychange"));
    }, shown ? "visible" : "hidden");
}

/** Elements that overlap, are cut off or lie outside the window. Runs in the browser. */
function misplaced() {
    // A scrolling box clips its content, so only elements of the same box are compared.
    const shown = [...document.querySelectorAll("h1, h2, p, a, button, input, time, dt, dd, summary, .row-name, .row-facts")]
        .filter((each) => each.checkVisibility({ opacityProperty: true }) && !each.closest(".visually-hidden, .avatar, .plot") && each.clientWidth + each.clientHeight > 0)
        .map((each) => ({ each, box: each.getBoundingClientRect(), clip: each.closest(".scroll, .tabs-row, .view, .details-column, .undo, .table-box, dialog") }));
    const outside = shown
        .filter(({ box, each }) => (box.left < -1 || box.right > innerWidth + 1) && !each.closest(".tabs-row, .table-box"))
        .map(({ each }) => `outside: ${each.outerHTML}`);
    const meet = (a, b) =>
        a.clip === b.clip && !a.each.contains(b.each) && !b.each.contains(a.each) &&
        Math.min(a.box.right, b.box.right) - Math.max(a.box.left, b.box.left) > 2 &&
        Math.min(a.box.bottom, b.box.bottom) - Math.max(a.box.top, b.box.top) > 2;
    const over = shown.flatMap((one, index) =>
        shown.slice(index + 1).filter((other) => meet(one, other)).map((other) => `${one.each.outerHTML} over ${other.each.outerHTML}`));
    const cut = [...document.querySelectorAll(".row-main")].filter((each) => each.scrollHeight > each.clientHeight + 1).map((each) => `cut: ${each.outerHTML}`);
    return [...outside, ...over, ...cut, ...(document.documentElement.scrollWidth > innerWidth ? ["the page scrolls sideways"] : [])];
}

/** Fails if elements overlap or are cut off. */
export async function fits(page, what) {
    assert.deepEqual(await page.evaluate(misplaced), [], what);
}

/** Fails if the layout is wrong or the accessibility scan finds a serious violation. */
export async function isAccessible(page, what) {
    await fits(page, what);
    await page.evaluate(axeSource);
    const { violations, passes } = await page.evaluate(() => window.axe.run());
    assert.ok(passes.length > 10);
    const serious = violations.filter((each) => ["serious", "critical"].includes(each.impact));
    assert.deepEqual(serious.map((each) => `${each.id}: ${each.nodes.map((node) => node.html)}`), [], what);
}
