// The page in a browser: each tab as a visitor uses it; and the npm package there.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { copyFileSync, mkdtempSync, readFileSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test, { after, afterEach, before } from "node:test";

import { build } from "esbuild";
import { chromium } from "playwright-core";

const root = process.env.KX_ROOT;
const address = "https://page.test/any/where/";
let browser, page;
const complaints = [];

before(async () => {
  browser = await chromium.launch({
    executablePath: "/usr/bin/chromium", args: ["--no-sandbox", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"],
  });
});
after(() => browser?.close());

/** Opens an address, whose files are in a folder. */
async function open(folder, hash, options, before = "") {
  page = await browser.newPage(options);
  await page.addInitScript(before);
  page.setDefaultTimeout(60000);
  page.on("pageerror", (error) => complaints.push(error.stack));
  page.on("console", (message) => ["error", "warning"].includes(message.type()) && complaints.push(message.text()));
  await page.route("**/*", (route) => {
    const url = route.request().url().replace(/#.*/, "");
    if (!url.startsWith(address)) complaints.push(`asks for ${url}`);
    return route.fulfill({ path: join(folder, url.slice(address.length) || "index.html") });
  });
  await page.goto(address + hash);
}

/** Opens the page, and waits for its first picture. */
async function visit(hash = "", { width = 1280, height = 900, ...options } = {}) {
  await open(`${root}/build/playground/page`, hash, { viewport: { width, height }, ...options });
  await page.waitForFunction(() => performance.getEntriesByName("first picture").length);
}
// Nothing may be complained of in any of the tests.
afterEach(async () => {
  await page?.close();
  assert.deepEqual(complaints.splice(0), []);
});

const texts = (selector) => page.locator(selector).allInnerTexts();
const number = (text) => Number(text.replace("−", "-"));
const matrix = async (id = "matrix") => (await texts(`#${id} td`)).map(number);
const verdicts = () => texts(".verdict");
/** What is pointed at is found by the last picture. */
const drawn = () => page.evaluate(() => new Promise((done) => { requestAnimationFrame(() => requestAnimationFrame(done)); }));
const inAddress = (text) => page.waitForFunction((wanted) => location.hash.includes(wanted), text).then(drawn);
const go = (hash) => page.evaluate((next) => { location.hash = next; }, hash).then(drawn);
/**
 * Waits until a picture's pixels are of the style sheet's colours of these names, at places that are given by x, y
 * and how far away, as the eye sees them from the front. Light changes how bright a colour is, and hardly its hue.
 */
async function looks(selector, wanted) {
  const places = Object.entries(wanted).flatMap(([look, all]) => all.map((place) => [look, ...place]));
  const others = () => page.$eval(selector, (canvas, all) => {
    canvas.scrollIntoView({ block: "center" });
    const { width, height } = canvas;
    if (width !== Math.round(canvas.clientWidth * devicePixelRatio)) return "stretched";
    const context = new OffscreenCanvas(width, height).getContext("2d", { willReadFrequently: true });
    context.drawImage(canvas, 0, 0);
    return all.filter(([look, x, y, away = 6.5]) => {
      const scale = height / 2 / Math.tan(0.3) / away;
      const [...pixel] = context.getImageData(width / 2 + x * scale, height / 2 - y * scale, 1, 1).data;
      const alpha = pixel.pop();
      if (look === "nothing") return alpha > 20;
      document.getElementById("probe").style.color = `var(--${look.split(",")[0]})`;
      const colour = getComputedStyle(document.getElementById("probe")).color.match(/\d+/g).map(Number);
      const [own, said] = [Math.hypot(...pixel), Math.hypot(...colour)];
      return !(Math.hypot(...pixel.map((each, i) => each / own - colour[i] / said)) < 0.04) ||
        look.includes("dark") !== own < 0.87 * said || look.includes("faint") !== alpha < 110;
    });
  }, places);
  for (let tries = 0; tries < 60 && (await others()).length; tries++) await page.waitForTimeout(50);
  assert.deepEqual(await others(), [], `what else is in ${selector}`);
}
/** A page that leaves one of the events to the browser is replaced by the file. */
const drop = (name, text) => page.evaluate(([file, content]) => {
  const dataTransfer = new DataTransfer();
  dataTransfer.items.add(new File([typeof content === "number" ? new Uint8Array(content) : content], file));
  for (const type of ["dragover", "drop"]) {
    if (document.body.dispatchEvent(new DragEvent(type, { dataTransfer, bubbles: true, cancelable: true }))) throw new Error(type);
  }
}, [name, text]);
const drag = async ({ x, y }, to) => {
  await page.mouse.move(x, y);
  await page.mouse.down();
  await page.mouse.move(to.x, to.y, { steps: 5 });
  await page.mouse.up();
};
// Two triangles, objects of their own, of which the second has a corner that a click at the middle does not come near.
const square = "v 9 9 5\nv 13 9 5\nv 13 13 5\nv 9 13 5\no one\nf 1 2 3\no other\nf 1 3 4\n";

test("a mesh is placed by fields, sliders and orders, and read back", async (t) => {
  await visit();
  t.diagnostic(`first picture after ${Math.round(await page.evaluate(() => performance.getEntriesByName("first picture")[0].startTime))} ms`);
  assert.equal(await page.innerText("#mesh-name"), "bunny.obj, 69,666 triangles");
  assert.match((await verdicts())[0], /^Rebuilds/);
  assert.match((await verdicts())[1], /^Does not rebuild.*a shear/);
  const orders = await page.$$eval("#orders canvas", (all) => all.map((each) => each.toDataURL()));
  assert.equal(new Set(orders).size, 6);
  // A quarter turn about Z, and a scale before it: (x, y, z) goes to (1 - y, 2 + 2x, 3 + z).
  const field = (label) => page.getByLabel(`${label}, as a number`, { exact: true });
  for (const [label, ...values] of [["Position", 1, 2, 3], ["Rotation, degrees", 0, 0, 90], ["Scale", 2, 1, 1]]) {
    for (const [i, value] of values.entries()) await field(`${label} ${"xyz"[i]}`).fill(String(value));
  }
  await field("Scale z").press("Enter");
  await field("Scale z").fill("");
  await page.focus("#theme");
  assert.equal(await field("Scale z").inputValue(), "1", "an empty field changes nothing");
  assert.deepEqual(await matrix(), [0, -1, 0, 1, 2, 0, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1]);
  assert.deepEqual(await matrix("inverse"), [0, 0.5, 0, -1, -1, 0, 0, 1, 0, 0, 1, -3, 0, 0, 0, 1]);
  await page.selectOption("#scale", "last");
  assert.deepEqual((await matrix()).slice(0, 8), [0, -2, 0, 1, 1, 0, 0, 2]);

  await page.locator("#orders label", { hasText: "XYZ" }).click();
  await field("Rotation, degrees x").fill("30");
  await page.getByLabel("Rotation, degrees y", { exact: true }).focus();
  for (let i = 0; i < 20; i++) await page.keyboard.press("ArrowRight");
  assert.equal(await field("Rotation, degrees y").inputValue(), "20");
  assert.match((await verdicts())[0], /^Does not rebuild.*not perpendicular/);
  assert.match((await verdicts())[1], /^Rebuilds/);
  assert.match(await page.innerText("#product"), /^T·S·RX·\(RY·RZ\)/);
  const read = (await texts("#readings article:nth-child(2) .parts td")).filter((each) => each).map(number);
  assert.deepEqual(read, [2, 1, 1, 30, 20, 90, 1, 2, 3, 0, 0, 0]);

  await inAddress("r=30,20,90");
  const said = await matrix();
  await page.reload();
  await page.waitForSelector("#matrix td");
  assert.deepEqual(await matrix(), said);
  assert.ok(await page.isChecked("[name=order][value=XYZ]"));
  assert.equal(await page.inputValue("#scale"), "last");

  await field("Scale y").fill("0");
  assert.ok(await page.isVisible("#singular"));
  assert.deepEqual(await matrix("inverse"), []);
  assert.match((await verdicts())[1], /^Singular/);
  await page.click("#reset");
  assert.match((await verdicts())[0], /^Rebuilds/);
});

test("the programs that are shown print the matrix that is shown", async () => {
  const folder = mkdtempSync(join(tmpdir(), "playground-"));
  const library = `${root}/build/library/src`;
  const host = [`-I${root}/include`, "-L" + library, `-Wl,-rpath,${library}`, "-lkxmaths5", "-lm", "-o", join(folder, "host")];
  const runs = {
    C: (file) => (execFileSync("gcc", [file, ...host]), execFileSync(join(folder, "host"))),
    "C++": (file) => (execFileSync("g++", ["-std=c++17", file, ...host]), execFileSync(join(folder, "host"))),
    Python: (file) => execFileSync("/usr/bin/python3", [file], { env: { ...process.env, PYTHONPATH: `${root}/build/python/installed` } }),
    // Where the package is installed.
    JavaScript: (file, text) => execFileSync("node", ["--input-type=module", "-"], { input: text, cwd: `${root}/build/playground/source` }),
  };
  for (const hash of ["#order=XZY&s=1,2,0.5", "#order=ZXY&scale=last&r=10,-200,33.3&p=1e-7,3,-123.45678"]) {
    await visit(hash, { permissions: ["clipboard-read", "clipboard-write"] });
    const wanted = [...await matrix(), ...await matrix("inverse")];
    for (const [language, end] of Object.entries({ C: "c", "C++": "cpp", Python: "py", JavaScript: "mjs" })) {
      await page.locator("#languages label", { hasText: RegExp(`^${language.replaceAll("+", "[+]")}$`) }).click();
      await page.click("#copy");
      const text = await page.locator("#code").textContent();
      assert.equal(await page.evaluate(() => navigator.clipboard.readText()), text);
      const file = join(folder, `program.${end}`);
      writeFileSync(file, text);
      const printed = String(runs[language](file, text)).match(/-?\d[\d.e+-]*/g).map(Number);
      assert.equal(printed.length, 32, language);
      printed.forEach((each, i) => assert.ok(Math.abs(each - wanted[i]) < 6e-5, `${language}: ${printed} is not ${wanted}`));
    }
    await page.close();
  }
});

test("a ray is cast at the mesh by mouse and keyboard", async () => {
  await visit("#p=0,0,0&r=0,0,0&s=1,1,1&eye=0,0");
  for (const key of ["Tab", "ArrowLeft", "ArrowLeft"]) await page.keyboard.press(key); // From the first to the last.
  assert.equal(await page.getAttribute("#tab-pick", "aria-selected"), "true");
  await drop("square.obj", square);
  await page.waitForFunction(() => document.getElementById("mesh-name").textContent === "square.obj, 2 triangles");
  const { width, height } = await page.locator("#pick-view").boundingBox();
  await page.click("#pick-view", { position: { x: width / 2 + 40, y: height / 2 + 40 } });
  await page.waitForSelector("#hit dl");
  const [triangle, point] = await texts("#hit dd");
  assert.equal(triangle, "0");
  const [x, y, z] = point.split(/\s+/).map(number);
  assert.ok(x > 0.2 && x === -y && z === 0, point);
  await inAddress("ray=");
  await page.focus("#pick-view");
  for (let i = 0; i < 30; i++) await page.keyboard.press("ArrowUp");
  assert.equal((await texts("#hit dd"))[0], "1");
  await page.keyboard.press("Shift+ArrowLeft");
  await inAddress("eye=-5,0");
  await page.click("#pick-view", { position: { x: 5, y: 5 } });
  await inAddress("ray=-0.5665"); // From the eye, five degrees towards -X.
  assert.equal(await page.innerText("#hit"), "The ray misses the mesh.");
  for (let i = 0; i < 20; i++) await page.keyboard.press("Shift+ArrowUp");
  await inAddress("eye=-5,85");
  const view = await page.locator("#pick-view").boundingBox();
  await drag({ x: view.x + 50, y: view.y + 50 }, { x: view.x + 90, y: view.y + 50 });
  await inAddress("eye=-25,85"); // Dragged to the right, it shows more of its left.

  // Turned by 45 degrees about X, then twice as high: the normal is stretched the other way.
  await go("tab=pick&p=3,0,0&r=45,0,0&s=1,2,1&scale=last&ray=0,3,4,3,-3,-4");
  await page.waitForSelector("#hit dl");
  assert.equal((await texts("#hit dl"))[0].replaceAll(/\s+/g, " ").replace(/\d/, "?"),
    "Triangle ? Point 3.000 0.000 0.000 Normal 0.000 −0.447 0.894 Range 5.831 Bearing 143.1° Elevation −31.0°");
  assert.match(await page.innerText("#cast-time"), /^(Less than 1|\d+) µs for this ray, among 2 triangles\.$/);
  await page.focus("#pick-view");
  await page.keyboard.press("Enter");
  await inAddress(",-0.3090"); // From the eye, which is 18 degrees up, at the middle.
  await go("tab=pick&s=1,0,1");
  await page.getByText("The mesh is flat here").waitFor();
  assert.equal(await page.innerText("#cast-time"), "");
});

test("pictures show each thing where it is, in its colour, lit from above", async () => {
  await visit("", { deviceScaleFactor: 2 });
  await drop("square.obj", square);
  const first = "#orders label:nth-child(3) canvas";
  for (const [hash, selector, wanted] of [
    // The square to the upper right, high rather than wide; its axes, those of the scene, and the floor.
    ["p=0.6,0.4,0&r=0,0,90&s=1,0.5,1", "#place-view", {
      mesh: [[0.15, 1.3], [1.05, 1.3], [1.05, -0.5]], nothing: [[-0.1, 1.3], [1.2, 1.3], [1.05, 1.5]],
      x: [[0.6, 1.55], [1.4, 0]], y: [[0.2, 0.4], [0, 1.2]], z: [[0.6, 0.4, 5.5]], grid: [[0, -1, 7.5]],
    }],
    ["p=0,0,0&r=-40,0,0&s=1,1,1", "#place-view", { mesh: [[0.5, 0.3], [-0.5, -0.3]] }],
    ["p=0,0,0&r=40,0,0&s=1,1,1", "#place-view", { "mesh, dark": [[0.5, 0.3], [-0.5, -0.3]] }],
    // A shear is not read by columns: a square is rebuilt, and the lozenge shines through where it is wider.
    ["p=0,0,0&r=0,0,45&s=1,0.3,1&scale=last", "#readings canvas", {
      mesh: [[0.02, 0.6, 5.6]], "ghost, faint": [[1.2, 0.02, 5.6]], "mesh, dark": [[0.6, 0.02, 5.6]],
    }],
    ["p=0,0,0&r=0,0,90&s=1,0.3,1", first, { mesh: [[0.2, 0.8, 5.6]], nothing: [[0.5, 0.8, 5.6]], x: [[0, 1.2, 5.6]] }],
    ["p=0,0,0&r=0,0,90&s=1,0.3,1&order=ZYX", first, { pale: [[0.2, 0.8, 5.6]] }],
    ["tab=pick&p=0,0,0&r=0,0,0&s=1,1,1&ray=0.95,-0.9,6,0,0,-1", "#pick-view", { off: [[0.7, -0.5], [0.95, -0.9, 6.02]], mesh: [[-0.5, 0.5]] }],
    // Met by the path: the dot at the hit, the edges of box and triangle; and missed.
    ["tab=pick&path=-0.9,0.9,0.1,-0.1,-0.3,0.12", "#scene-view", {
      good: [[-0.6333, 0.5, 7.893], [-0.5, 0.5, 7.5], [-0.5, 0.5, 8.5]], accent: [[-0.8, 0.75, 7.9], [-0.2, -0.15, 7.88]],
    }],
    ["tab=pick&path=-0.9,0.9,0.1,-0.8,1.3,0.12&triangle=0.5,-0.5,0,1.5,-0.5,0,1,0.5,0", "#scene-view", {
      ghost: [[-0.5, 0.5, 7.5], [1, -0.5, 8]], "mesh, faint": [[1, 0, 8]],
    }],
  ]) {
    await go(`eye=0,0&${hash}`);
    await looks(selector, wanted);
  }
  // In another size, and in the colours of the other theme.
  await page.setViewportSize({ width: 700, height: 900 });
  await page.click("#theme");
  await looks("#scene-view", { ghost: [[-0.5, 0.5, 7.5], [1, -0.5, 8]] });
});

test("box, triangle and path are dragged, and are in the rows of the tables", async () => {
  await visit("#tab=pick", { height: 1500 });
  const rows = () => texts("tr[aria-current] td:first-child");
  assert.deepEqual(await rows(), ["hit from outside", "hit"]);
  const start = await page.locator(".handle").nth(0).boundingBox();
  const end = await page.locator(".handle").nth(1).boundingBox();
  const high = await page.locator(".handle").nth(3).boundingBox();
  await drag({ x: end.x + 9, y: end.y + 9 }, { x: end.x + 30, y: high.y - 60 });
  await page.mouse.move(end.x, end.y);
  assert.equal((await rows())[0], "the slabs have no t in common, or none at or above 0");
  await inAddress("path=");
  const dragged = await page.locator(".handle").nth(1).boundingBox();
  assert.ok(Math.hypot(dragged.x - end.x - 21, dragged.y - high.y + 69) < 5, "it follows the mouse, as far as the button is pressed");
  assert.deepEqual(await page.locator(".handle").nth(0).boundingBox(), start);

  const cases = {
    "path=-0.5,0,0,2,0.01,-0.01": ["from inside", "hit"],
    "path=-1,0,0,2,0.01,-0.01": ["the origin on the surface", "hit"],
    "path=-3,0,0,2,0,0.01": ["an axis with |d| below KX_TOLERANCE", "hit"],
    // Missed in X, before the axis without a step has its turn.
    "path=3,0,0,4,0,0.01": ["the slabs have no t in common, or none at or above 0", "|denom| below KX_TOLERANCE; the origin on the plane, or the ray leads away from it"],
    "path=-3,3,0.1,2,3.1,0.2&box=1,0,0,0,1,1": ["the box is inverted", "h outside the triangle, or the triangle too small"],
    "as=line&path=-3,0.1,0.1,-2,0.2,0.2": ["the box is inverted, or both ends are outside on the same side",
      "|denom| below KX_TOLERANCE; the start on the plane, or the line leads away from it; t above 1"],
    "as=line&path=-1,0,0,3,0.01,-0.01": ["the start is in the box or on its surface", "hit"],
    "as=line&path=-3,0,0,2,0,0.01": ["an axis with |d| below KX_TOLERANCE", "hit"],
    "as=line&path=-3,-0.1,0.1,2,0.01,-0.01": ["hit", "hit"],
    "as=line&path=-2,0,0.1,-0.9,1,0.2": ["the slabs have no t in common, or none from 0 to 1",
      "|denom| below KX_TOLERANCE; the start on the plane, or the line leads away from it; t above 1"],
  };
  for (const [hash, wanted] of Object.entries(cases)) {
    await go(`tab=pick&${hash}`);
    await page.waitForFunction((as) => document.querySelector(`#kinds [value=${as}]`).checked, hash.startsWith("as=line") ? "line" : "ray");
    assert.deepEqual(await rows(), wanted, hash);
  }
  // By the keyboard: the box's low corner past its high one.
  await page.locator(".handle").nth(2).focus();
  for (const key of [...Array(21).fill("ArrowRight"), "PageUp", "Shift+ArrowDown"]) await page.keyboard.press(key);
  assert.deepEqual(await page.$$eval(".handle", (all) => all.map(({ title, ariaLabel }) => title === ariaLabel && title)), [
    "Start of the path: -2, 0, 0.1", "End of the path, through which a ray goes on: -0.9, 1, 0.2",
    "Low corner of the box: 0.05, -0.51, -0.55", "High corner of the box: 0, 0.5, 0.5", "First corner of the triangle: 0.8, -0.8, -0.6",
    "Second corner of the triangle: 1.7, -0.7, 0.5", "Third corner of the triangle: 1.1, 0.9, -0.5",
  ]);
  assert.match((await rows())[0], /^the box is inverted/);
  await page.click("#reset-scene");
  assert.deepEqual(await rows(), ["hit from outside", "hit"]);
  assert.deepEqual(await texts("#verdicts h3"), ["KXRayIxBox returns 1 at −1.00 0.18 0.42", "KXRayIxTriangle returns 1 at 1.06 −0.03 −0.40"]);
});

test("files that can't be read are said so, in a sentence, and the mesh stays", async () => {
  await visit();
  for (const [name, content, sentence] of [
    ["picture.png", "\x89PNG\r\n\x1a\n\0\0", "there are no triangles in it, as an OBJ file has them."],
    ["corner.obj", `${square}f 1 2 9\n`, "a number is not one, or a face has a corner that is not there."],
    ["number.obj", square.replace("13 9", "one 9"), "a number is not one, or a face has a corner that is not there."],
    ["large.obj", 2e8 + 1, "it is larger than 200 MB."],
    ["point.obj", "v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n", "all its points are one."],
  ]) {
    await drop(name, content);
    await page.getByRole("alert").getByText(RegExp(`^${name} cannot be (read:|shown:) ${sentence}$`)).waitFor({ timeout: 5000 });
    assert.equal(await page.innerText("#mesh-name"), "bunny.obj, 69,666 triangles");
  }
  await page.setInputFiles("#file", { name: "good.obj", mimeType: "text/plain", buffer: Buffer.from("# A long file.\n".repeat(1e5) + square) });
  await page.waitForFunction(() => document.getElementById("mesh-name").textContent === "good.obj, 2 triangles");
  await page.setInputFiles("#file", []); // The dialogue was closed without a choice.
  assert.ok(await page.isHidden("#problem"));
  assert.equal(await page.inputValue("#file"), "", "the same file can be opened again, after it was saved");
});

test("digests and replay are those of the native build, and one bit changed is noticed", async () => {
  await visit("#tab=same-bits");
  await page.locator("#digests-verdict.good").waitFor();
  assert.equal(await page.innerText("#digests-verdict"), "92 of 92 digests are those of the native build.");
  await page.locator(".function").first().focus();
  await page.keyboard.press("ArrowRight");
  assert.match(await page.innerText("#digest-details"), /^KXV3Normalise: [0-9a-f]{16}, here and natively$/);
  await page.locator(".function").nth(5).hover();
  assert.match(await page.innerText("#digest-details"), RegExp(`^${await page.locator(".function").nth(5).innerText()}: `));
  await page.locator("#replay-verdict.good").waitFor({ timeout: 90000 });
  assert.equal(await page.locator("#checkpoints .same").count(), 10);
  assert.equal(await page.$eval("progress", (bar) => bar.value / bar.max), 1);
  await page.click("#replay-bit");
  await page.locator("#checkpoints .other").first().waitFor();
  assert.equal(await page.locator("#checkpoints .same").count(), 0);
  assert.match(await page.innerText("#replay-verdict"), /, one bit changed$/);
  await page.click("#replay-again");
  const before = await page.$eval("#replay-view", (canvas) => canvas.toDataURL());
  await page.locator("#checkpoints .same").first().waitFor();
  assert.notEqual(await page.$eval("#replay-view", (canvas) => canvas.toDataURL()), before, "the bodies move");
});

test("digests of all functions through the bundled package are the native ones", async () => {
  const folder = mkdtempSync(join(tmpdir(), "playground-"));
  await build({
    stdin: {
      contents: `
        import * as kx from "kxmaths5";
        import { digests } from "./tests/javascript/digest_host.mjs";
        const [program, api] = await Promise.all(["digest.wasm", "kxmaths5.json"].map(async (name) => (await fetch(name)).arrayBuffer()));
        const lines = [];
        await digests(program, JSON.parse(new TextDecoder().decode(api)), kx, (text) => lines.push(text));
        globalThis.printed = lines.join("");`,
      resolveDir: root,
    },
    nodePaths: [`${root}/build/playground/source/node_modules`], bundle: true, minify: true, format: "esm", outfile: `${folder}/host.js`,
  });
  writeFileSync(`${folder}/index.html`, "<link rel=icon href=data:,><script type=module src=host.js></script>");
  copyFileSync(`${root}/build/javascript/digest.wasm`, `${folder}/digest.wasm`);
  copyFileSync(`${root}/api/kxmaths5.json`, `${folder}/kxmaths5.json`);
  await open(folder, "");
  await page.waitForFunction("globalThis.printed");
  assert.equal(await page.evaluate("printed"), readFileSync(`${root}/tools/digest/digests.txt`, "utf8"));
});

test("any address, a narrow screen, and both themes", async () => {
  // All that is shown comes from the address, and gets back there.
  const all = "#tab=pick&p=1,2,3&r=4,5,6&s=7,8,9&order=XZY&scale=last&eye=5,6&ray=1,2,3,4,5,6&box=1,2,3,4,5,6&path=6,5,4,3,2,1&triangle=1,2,3,4,5,6,7,8,9&as=line";
  await visit(all, { permissions: ["clipboard-read", "clipboard-write"] });
  await page.focus("#scene-view");
  await page.keyboard.press("ArrowRight");
  await page.click("#link");
  const copied = await page.waitForFunction(() => {
    navigator.clipboard.readText().then((text) => { globalThis.copied = text; });
    return globalThis.copied?.startsWith("https:") && globalThis.copied; // Before, it is what another page copied.
  });
  assert.equal(await copied.jsonValue(), address + all.replace("eye=5", "eye=10"));
  await page.close();
  const background = () => page.evaluate(() => getComputedStyle(document.documentElement).backgroundColor);
  await visit("#tab=none&p=1,2&r=a,b,c&order=&ray=1,2&eye=NaN,1&box=Infinity,0,0,1,1,1&unknown=1", { width: 360, height: 740, colorScheme: "dark" });
  assert.equal(await page.inputValue("input[type=number][data-at=p0]"), "0.5");
  const dark = await background();
  await page.click("#theme");
  assert.notEqual(await background(), dark);
  await looks("#place-view", { y: [[0, 1.33, 6.07]] });
  for (const tab of ["place", "pick", "same-bits"]) {
    await page.click(`#tab-${tab}`);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 360, tab);
  }
});

test("what a browser lacks is said in a sentence", async () => {
  const folder = `${root}/build/playground/page`;
  await open(folder, "#s=2,3,4", {}, "delete globalThis.WebAssembly;");
  await page.getByRole("alert").getByText("This browser cannot run the library: ").waitFor();
  await page.close();
  await open(folder, "#p=1,2,3", {}, "const all = HTMLCanvasElement.prototype.getContext; HTMLCanvasElement.prototype.getContext = function (kind) { return kind === '2d' ? all.call(this, kind) : null; };");
  await page.getByRole("alert").getByText("This browser has no WebGL, so the mesh is not drawn. The numbers are right all the same.").waitFor();
  assert.equal((await matrix())[3], 1);
  complaints.splice(0); // The renderer's own, on the console.
});
