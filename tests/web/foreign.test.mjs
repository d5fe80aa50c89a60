// A page of another origin that uses the API with a read-only token, and one whose origin is not allowed.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { once } from "node:events";
import * as fs from "node:fs";
import { createServer } from "node:http";
import test from "node:test";
import { Stage } from "./harness.mjs";

/** Serves an empty page; returns its origin. */
async function otherSite(context) {
    const server = createServer((_, response) => response.setHeader("Content-Type", "text/html").end("<!doctype html><title>wall board</title>"));
    server.listen(0, "127.0.0.1");
    await once(server, "listening");
    context.after(() => server.close());
    return `http://127.0.0.1:${server.address().port}/`;
}

/** Runs in the page: the status of a request, or the error of one that the browser does not let through. */
const request = async ([url, token, method]) => {
    try {
        return (await fetch(url, { method, headers: { Authorization: `Bearer ${token}` } })).status;
    } catch (error) {
        return error.name;
    }
};

/** Runs in the page: the name in the first missed call that a stream reports, and the status of its ticket used again. */
const listen = async ([api, token]) => {
    const headers = { Authorization: `Bearer ${token}` };
    const { ticket } = await (await fetch(`${api}tickets`, { method: "POST", headers })).json();
    const stream = new EventSource(`${api}events?ticket=${ticket}`);
    const seen = new Promise((resolve) => stream.addEventListener("missedCallsUpdate", (event) => resolve(JSON.parse(event.data).item.surname)));
    await new Promise((resolve) => (stream.onopen = resolve));
    document.title = "listens";
    const again = (await fetch(`${api}events?ticket=${ticket}`)).status;
    return [await seen, again];
};

test("a page whose origin is allowed reads with a read-only token and hears of calls; another page gets nothing", async (context) => {
    const stage = new Stage(context);
    const [board, foreign] = [await otherSite(context), await otherSite(context)];
    const config = `${stage.data}/allowed.toml`;
    fs.writeFileSync(config, `[api]\nallowed-origins = ["${board.slice(0, -1)}"]\n`);
    await stage.plays("status normal");
    await stage.serves("--config", config);
    const token = execFileSync(process.env.CALLJOURNAL, ["tokens", "create", "board", "--scope", "read", "--data", stage.data], { encoding: "utf8" }).trim();
    const page = await stage.opens(); // the browser has the cookie, which is not for others
    const api = `${stage.url}api/v1/`;
    await page.goto(board);
    assert.equal(await page.evaluate(request, [`${api}lists/missed`, token, "GET"]), 200);
    assert.equal(await page.evaluate(request, [`${api}lists/missed?all=true`, token, "DELETE"]), 403);
    assert.equal(await page.evaluate(request, [`${api}settings`, token, "GET"]), 403);
    assert.equal(await page.evaluate(request, [`${api}lists/missed`, "", "GET"]), 401);
    const heard = page.evaluate(listen, [api, token]);
    await page.waitForFunction(() => document.title === "listens");
    await stage.plays('call ann from 4711 "Ann" ; ring ann ; giveup ann');
    assert.deepEqual(await heard, ["Ann", 401]);
    await page.goto(foreign);
    assert.equal(await page.evaluate(request, [`${api}lists/missed`, token, "GET"]), "TypeError");
    assert.equal(await page.evaluate(request, [`${api}lists/missed?all=true`, stage.token, "DELETE"]), "TypeError");
    assert.equal((await stage.api("GET", "lists/missed")).total, 1);
});
