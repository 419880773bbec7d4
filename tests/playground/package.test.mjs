// The npm package, bundled by esbuild and loaded in a browser: every function has the native bits there.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import test from "node:test";

import { build } from "esbuild";
import { chromium } from "playwright-core";

test("digests of all functions through the bundled package are the native ones", async (t) => {
  const host = `
    import * as kx from "kxmaths5";
    import { digests } from "./tests/javascript/digest_host.mjs";
    const [program, api] = await Promise.all(["program", "api"].map(async (name) => (await fetch(name)).arrayBuffer()));
    const lines = [];
    await digests(program, JSON.parse(new TextDecoder().decode(api)), kx, (text) => lines.push(text));
    globalThis.printed = lines.join("");`;
  const { outputFiles: [bundle] } = await build({
    stdin: { contents: host, resolveDir: process.cwd() }, nodePaths: ["build/playground/source/node_modules"],
    bundle: true, minify: true, format: "esm", write: false,
  });
  const files = {
    "/": { contentType: "text/html", body: "<script type=module src=host.js></script>" },
    "/host.js": { contentType: "text/javascript", body: bundle.text },
    "/program": { body: readFileSync("build/javascript/digest.wasm") },
    "/api": { body: readFileSync("api/kxmaths5.json") },
  };
  const browser = await chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
  t.after(() => browser.close());
  const page = await browser.newPage();
  page.on("pageerror", (error) => { throw error; });
  await page.route("**/*", (route) => route.fulfill(files[new URL(route.request().url()).pathname] ?? { status: 404 }));
  await page.goto("https://host.test/");
  await page.waitForFunction("globalThis.printed");
  assert.equal(await page.evaluate("printed"), readFileSync("tools/digest/digests.txt", "utf8"));
});
