// The choice among several lines.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import * as fs from "node:fs";
import test from "node:test";
import { at, row, rows, Stage } from "./harness.mjs";

const config = '[[line]]\ndevice = "2001"\nname = "Ann"\n[[line]]\ndevice = "2002"\nname = "Bob <i>"\n';

for (const width of [390, 1440]) {
    test(`another line is chosen, and stays chosen, at ${width} pixels`, async (context) => {
        const stage = new Stage(context);
        const file = `${stage.data}/lines.toml`;
        fs.writeFileSync(file, config);
        await stage.plays('call eve from 4711 "Eve" ; ring eve ; giveup eve');
        await stage.serves("--config", file);
        await stage.missedAre(({ total }) => total === 1);
        const page = await stage.opens({ viewport: { width, height: 800 } });
        await row(page, "Eve").waitFor();
        assert.deepEqual(await at(page, "line-choice").locator("option").allTextContents(), ["Ann · 2001 (1 new)", "Bob <i> · 2002"]);
        await at(page, "line-choice").selectOption("2002");
        await at(page, "empty").waitFor();
        await page.reload();
        await at(page, "empty").waitFor();
        assert.equal(await at(page, "line-choice").inputValue(), "2002");
        await at(page, "line-choice").selectOption("2001");
        await row(page, "Eve").waitFor();

        // An access key for one line offers no choice; the line that was chosen before is forgotten.
        const token = execFileSync(process.env.CALLJOURNAL, ["tokens", "create", "two", "--line", "2002", "--data", stage.data], { encoding: "utf8" }).trim();
        await page.goto(`${stage.url}?token=${token}`);
        await at(page, "empty").waitFor();
        await rows(page, 0);
        assert.equal(await at(page, "line-choice").count(), 0);
        stage.browserErrors.splice(0); // the refusal
    });
}
