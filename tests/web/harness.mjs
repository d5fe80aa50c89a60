// The program and a browser for the tests of the page. Every wait is for something that happens, and ends after `limit`.

import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import * as fs from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { createInterface } from "node:readline";

const packages = createRequire(new URL("../../web/package.json", import.meta.url));
const { chromium } = packages("playwright-core");
const axeSource = fs.readFileSync(packages.resolve("axe-core/axe.min.js"), "utf8");
const limit = 40_000; // generous: a sanitizer and a busy machine make everything slow

/** A journal with its switch and a browser before its page; `test` is node's test context, which ends them all. */
export class Stage {
    data = fs.mkdtempSync(`${tmpdir()}/cjpage`);
    running = new Set();
    complaints = [];

    constructor(test) {
        test.after(async () => {
            await this.browser?.close();
            await Promise.all([...this.running].map((each) => this.stop(each)));
            fs.rmSync(this.data, { recursive: true });
        });
    }

    /** Answers the process and what the pattern's group finds in its output. */
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
            throw new Error(`calljournal did not end well:\n${program.log}`);
        }
    }

    /** Starts a switch that plays these calls, in place of the one before: the journal finds it by itself. */
    async plays(calls) {
        if (this.running.has(this.simulator)) {
            await this.stop(this.simulator);
        }
        const file = `${this.data}/calls.txt`;
        fs.writeFileSync(file, calls);
        [this.simulator, this.address] = await this.start(
            /^switch listens on (\S+)$/, "switch", "--scenario", file, "--listen", this.address ?? "127.0.0.1:0");
    }

    /** Starts the server, the second time at the address it had. */
    async serves() {
        const listen = this.url ? new URL(this.url).host : "127.0.0.1:0";
        [this.server, this.url] = await this.start(
            /page and API (\S+)$/, "serve", "--data", this.data, "--switch", this.address, "--listen", listen);
        this.token = fs.readFileSync(`${this.data}/api-token`, "utf8").trim();
    }

    /** A slow browser, `slowness` times slower than this machine, shows what is done too late for the reader's next key. */
    async opens({ fontSize, slowness, ...options } = {}, address = `${this.url}?token=${this.token}`) {
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
        page.on("pageerror", (error) => this.complaints.push(String(error)));
        page.on("console", (message) => message.type() === "error" && this.complaints.push(message.text()));
        await page.goto(address);
        return page;
    }

    async api(method, target, body) {
        const headers = { Authorization: `Bearer ${this.token}` };
        return (await fetch(`${this.url}api/v1/${target}`, { method, headers, body: body && JSON.stringify(body) })).json();
    }

    /** Asks for the missed calls until they are like this. */
    async missedAre(expected) {
        const end = Date.now() + limit;
        while (!expected(await this.api("GET", "lists/missed"))) {
            assert.ok(Date.now() < end, `never: ${expected}`);
        }
    }
}

export const at = (page, name) => page.locator(`[data-test="${name}"]`);
export const row = (page, text) => at(page, "row").filter({ hasText: text });

/** What is deleted can be undone however long it takes: the page's clock stands still. */
export async function unhurried(page, does) {
    await page.clock.install();
    await page.clock.pauseAt((await page.evaluate(() => Date.now())) + 60_000);
    await does();
    await page.clock.resume();
}

/** The page is told that its window is hidden, or shown again; a browser without a screen shows all of them. */
export async function setShown(page, shown) {
    await page.evaluate((state) => {
        Object.defineProperty(document, "visibilityState", { value: state, configurable: true });
        document.dispatchEvent(new Event("visibilitychange"));
    }, shown ? "visible" : "hidden");
}

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
    const cut = [...document.querySelectorAll(".row-entry")].filter((each) => each.scrollHeight > each.clientHeight + 1).map((each) => `cut: ${each.outerHTML}`);
    return [...outside, ...over, ...cut, ...(document.documentElement.scrollWidth > innerWidth ? ["the page scrolls sideways"] : [])];
}

/** Nothing overlaps or is cut. */
export async function fits(page, what) {
    assert.deepEqual(await page.evaluate(misplaced), [], what);
}

/** It fits, and a scan for what some people cannot use finds nothing serious. */
export async function isSound(page, what) {
    await fits(page, what);
    await page.evaluate(axeSource);
    const { violations, passes } = await page.evaluate(() => window.axe.run());
    assert.ok(passes.length > 10);
    const serious = violations.filter((each) => ["serious", "critical"].includes(each.impact));
    assert.deepEqual(serious.map((each) => `${each.id}: ${each.nodes.map((node) => node.html)}`), [], what);
}
