// The page in a browser: each tab as a visitor uses it.
import assert from "node:assert/strict";
import { execFileSync, spawn } from "node:child_process";
import { mkdtempSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import test, { after, afterEach, before } from "node:test";

import { chromium } from "playwright-core";

const root = process.env.KX_ROOT;
let server, browser, address, page;
const complaints = [];

before(async () => {
  server = spawn("python3", ["-u", "-m", "http.server", "--bind", "127.0.0.1", "--directory", `${root}/build/playground/page`, "0"]);
  const [said] = await new Promise((done) => server.stdout.once("data", (data) => done([String(data)])));
  address = `http://127.0.0.1:${/port (\d+)/.exec(said)[1]}/`;
  browser = await chromium.launch({
    executablePath: "/usr/bin/chromium", args: ["--no-sandbox", "--use-angle=swiftshader", "--enable-unsafe-swiftshader"],
  });
});
after(async () => {
  await browser?.close();
  server?.kill();
});

/** Opens the page, and waits for its first picture. */
async function visit(hash = "", { width = 1280, height = 900, ...options } = {}) {
  page = await browser.newPage({ viewport: { width, height }, ...options });
  page.setDefaultTimeout(20000);
  page.on("pageerror", (error) => complaints.push(error.stack));
  page.on("console", (message) => ["error", "warning"].includes(message.type()) && complaints.push(message.text()));
  page.on("request", (request) => request.url().startsWith(address) || complaints.push(`asks for ${request.url()}`));
  await page.goto(address + hash);
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
const picture = (id) => page.evaluate((name) => document.getElementById(name).toDataURL(), id);
const inAddress = (text) => page.waitForFunction((wanted) => location.hash.includes(wanted), text);
/** Waits until something is drawn in all of the places and nothing in the others: x, y and how far away, from the front. */
const shows = (id, drawn, empty = []) => page.waitForFunction(([name, ...lists]) => {
  const canvas = document.getElementById(name);
  const { width, height } = canvas;
  const context = new OffscreenCanvas(width, height).getContext("2d", { willReadFrequently: true });
  context.drawImage(canvas, 0, 0);
  return lists.every((list, i) => list.every(([x, y, away = 6.5]) => {
    const scale = height / 2 / Math.tan(0.3) / away;
    return context.getImageData(width / 2 + x * scale, height / 2 - y * scale, 1, 1).data[3] > 110 === (i === 0);
  }));
}, [id, drawn, empty]);
const drop = (name, text) => page.evaluate(([file, content]) => {
  const dataTransfer = new DataTransfer();
  dataTransfer.items.add(new File([content], file));
  document.body.dispatchEvent(new DragEvent("drop", { dataTransfer, bubbles: true, cancelable: true }));
}, [name, text]);
// Two triangles, objects of their own, of which the second has a corner that a click at the middle does not come near.
const square = "v 9 9 5\nv 13 9 5\nv 13 13 5\nv 9 13 5\no one\nf 1 2 3\no other\nf 1 3 4\n";

test("a mesh is placed by fields, sliders and orders, and read back", async (t) => {
  await visit();
  t.diagnostic(`first picture after ${Math.round(await page.evaluate(() => performance.getEntriesByName("first picture")[0].startTime))} ms`);
  assert.equal(await page.innerText("#mesh-name"), "bunny.obj, 69,666 triangles");
  assert.match((await verdicts())[0], /^Rebuilds/);
  assert.match((await verdicts())[1], /^Does not rebuild.*a shear/);
  const drawn = await picture("place-view");
  const orders = await page.$$eval("#orders canvas", (all) => all.map((each) => each.toDataURL()));
  assert.equal(new Set(orders).size, 6);
  const shares = await page.$$eval("#orders canvas", (all) => all.map((each) => {
    const { data } = each.getContext("2d").getImageData(0, 0, each.width, each.height);
    return data.filter((alpha, i) => i % 4 === 3 && alpha === 255).length / data.length * 4;
  }));
  assert.ok(Math.min(...shares) > 0.1, `the mesh is drawn in each: ${shares}`);

  // A quarter turn about Z, and a scale before it: (x, y, z) goes to (1 - y, 2 + 2x, 3 + z).
  for (const [at, value] of Object.entries({ p0: 1, p1: 2, p2: 3, r0: 0, r1: 0, r2: 90, s0: 2, s1: 1, s2: 1 })) {
    await page.fill(`input[type=number][data-at=${at}]`, String(value));
  }
  assert.deepEqual(await matrix(), [0, -1, 0, 1, 2, 0, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1]);
  assert.deepEqual(await matrix("inverse"), [0, 0.5, 0, -1, -1, 0, 0, 1, 0, 0, 1, -3, 0, 0, 0, 1]);
  assert.notEqual(await picture("place-view"), drawn);
  await page.selectOption("#scale", "last");
  assert.deepEqual((await matrix()).slice(0, 8), [0, -2, 0, 1, 1, 0, 0, 2]);

  await page.locator("#orders label", { hasText: "XYZ" }).click();
  await page.fill("input[type=number][data-at=r0]", "30");
  await page.focus("input[type=range][data-at=r1]");
  for (let i = 0; i < 20; i++) await page.keyboard.press("ArrowRight");
  assert.equal(await page.inputValue("input[type=number][data-at=r1]"), "20");
  assert.match((await verdicts())[0], /^Does not rebuild.*not perpendicular/);
  assert.match((await verdicts())[1], /^Rebuilds/);
  assert.match(await page.innerText("#product"), /^T·S·RX·\(RY·RZ\)/);
  const read = (await texts("#readings article:nth-child(2) .parts td")).filter((each) => each).map(number);
  assert.deepEqual(read, [2, 1, 1, 30, 20, 90, 1, 2, 3, 0, 0, 0]);

  await inAddress("r=30,20,90");
  const [said, link] = [await matrix(), page.url()];
  await page.close();
  await visit(new URL(link).hash);
  assert.deepEqual(await matrix(), said);
  assert.ok(await page.isChecked("[name=order][value=XYZ]"));

  await page.fill("input[type=number][data-at=s1]", "0");
  assert.ok(await page.isVisible("#singular"));
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
  await page.keyboard.press("Tab");
  await page.keyboard.press("ArrowRight");
  assert.equal(await page.getAttribute("#tab-pick", "aria-selected"), "true");
  await drop("square.obj", square);
  await page.waitForFunction(() => document.getElementById("mesh-name").textContent === "square.obj, 2 triangles");
  const { width, height } = await page.locator("#pick-view").boundingBox();
  await page.click("#pick-view", { position: { x: width / 2 + 40, y: height / 2 + 40 } });
  await page.waitForSelector("#hit dl");
  const [triangle, point, normal, range, bearing, elevation] = await texts("#hit dd");
  assert.equal(triangle, "0");
  const [x, y, z] = point.split(/\s+/).map(number);
  assert.ok(x > 0.2 && x === -y && z === 0, point);
  assert.equal(normal, "0.000  0.000  1.000");
  // The eye is 6.5 away, on +Z: the point is seen towards -Z, a little to +X and below.
  assert.ok(Math.abs(number(range) - Math.hypot(x, y, 6.5)) < 1e-3, range);
  assert.ok(Math.abs(parseFloat(bearing) - (180 - Math.atan2(x, 6.5) * 180 / Math.PI)) < 0.06, bearing);
  assert.ok(Math.abs(parseFloat(number(elevation.replace("°", ""))) + Math.asin(x / number(range)) * 180 / Math.PI) < 0.06, elevation);

  await inAddress("ray=");
  const eye = await picture("pick-view");
  await page.focus("#pick-view");
  for (let i = 0; i < 30; i++) await page.keyboard.press("ArrowUp");
  assert.equal((await texts("#hit dd"))[0], "1");
  await page.keyboard.press("Shift+ArrowLeft");
  await inAddress("eye=-5,0");
  await page.waitForFunction((before) => document.getElementById("pick-view").toDataURL() !== before, eye);
  await page.click("#pick-view", { position: { x: 5, y: 5 } });
  await inAddress("ray=-0.5665"); // From the eye, five degrees towards -X.
  assert.equal(await page.innerText("#hit"), "The ray misses the mesh.");
  for (let i = 0; i < 20; i++) await page.keyboard.press("Shift+ArrowUp");
  await inAddress("eye=-5,85");
  const view = await page.locator("#pick-view").boundingBox();
  await page.mouse.move(view.x + 50, view.y + 50);
  await page.mouse.down();
  await page.mouse.move(view.x + 90, view.y + 50, { steps: 5 });
  await page.mouse.up();
  await inAddress("eye=-25,85"); // Dragged to the right, it shows more of its left.

  // Turned by 45 degrees about X, then twice as high: the normal is stretched the other way.
  await page.evaluate(() => { location.hash = "tab=pick&p=3,0,0&r=45,0,0&s=1,2,1&scale=last&ray=3,0,6,0,0,-9"; });
  await page.waitForSelector("#hit dl");
  assert.deepEqual((await texts("#hit dd")).slice(1), ["3.000  0.000  0.000", "0.000  −0.447  0.894", "6.000", "180.0°", "0.0°"]);

  // Moved to the upper right, and high rather than wide: it is drawn there, and not next to it.
  await page.evaluate(() => { location.hash = "p=0.6,0.4,0&r=0,0,90&s=1,0.5,1&eye=0,0"; });
  await shows("place-view", [[0.15, 1.3], [1.05, 1.3], [1.05, -0.5], [1.5, 0]], [[-0.1, 1.3], [1.2, 1.3], [1.05, 1.5]]);
});

test("box, triangle and path are dragged, and are in the rows of the tables", async () => {
  await visit("#tab=pick", { height: 1500 });
  const rows = () => texts("tr[aria-current] td:first-child");
  assert.deepEqual(await rows(), ["hit from outside", "hit"]);
  const start = await page.locator(".handle").nth(0).boundingBox();
  const end = await page.locator(".handle").nth(1).boundingBox();
  const high = await page.locator(".handle").nth(3).boundingBox();
  await page.mouse.move(end.x + 9, end.y + 9);
  await page.mouse.down();
  await page.mouse.move(end.x + 30, high.y - 60, { steps: 5 });
  await page.mouse.up();
  assert.equal((await rows())[0], "the slabs have no t in common, or none at or above 0");
  await inAddress("path=");
  const dragged = await page.locator(".handle").nth(1).boundingBox();
  assert.ok(Math.hypot(dragged.x - end.x - 21, dragged.y - high.y + 69) < 12, "it follows the mouse");
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
    await page.evaluate((next) => { location.hash = next; }, `tab=pick&${hash}`);
    await page.waitForFunction((as) => document.querySelector(`#kinds [value=${as}]`).checked, hash.startsWith("as=line") ? "line" : "ray");
    assert.deepEqual(await rows(), wanted, hash);
  }
  // By the keyboard: the box's low corner past its high one.
  await page.locator(".handle").nth(2).focus();
  for (let i = 0; i < 21; i++) await page.keyboard.press("ArrowRight");
  assert.equal(await page.locator(".handle").nth(2).getAttribute("aria-label"), "Low corner of the box: 0.05, -0.5, -0.5");
  assert.match((await rows())[0], /^the box is inverted/);
  await page.click("#reset-scene");
  assert.deepEqual(await rows(), ["hit from outside", "hit"]);
  // Seen from the front: the box's upper edge and the triangle's lower one.
  await page.evaluate(() => { location.hash = "tab=pick&eye=0,0&triangle=0.5,-0.5,0,1.5,-0.5,0,1,0.5,0"; });
  await shows("scene-view", [[-0.5, 0.5, 7.5], [1, -0.5, 8]]);
});

test("files that can't be read are said so, in a sentence, and the mesh stays", async () => {
  await visit();
  for (const [name, content, sentence] of [
    ["picture.png", "\x89PNG\r\n\x1a\n\0\0", "there are no triangles in it, as an OBJ file has them."],
    ["corner.obj", `${square}f 1 2 9\n`, "a number is not one, or a face has a corner that is not there."],
    ["number.obj", square.replace("13 9", "one 9"), "a number is not one, or a face has a corner that is not there."],
    ["point.obj", "v 1 1 1\nv 1 1 1\nv 1 1 1\nf 1 2 3\n", "all its points are one."],
  ]) {
    await drop(name, content);
    await page.waitForFunction((wanted) => document.getElementById("problem").textContent.startsWith(wanted), name);
    assert.ok((await page.innerText("#problem")).endsWith(sentence), await page.innerText("#problem"));
    assert.equal(await page.innerText("#mesh-name"), "bunny.obj, 69,666 triangles");
  }
  await page.setInputFiles("#file", { name: "good.obj", mimeType: "text/plain", buffer: Buffer.from(square) });
  await page.waitForFunction(() => document.getElementById("mesh-name").textContent === "good.obj, 2 triangles");
  assert.ok(await page.isHidden("#problem"));
});

test("digests and replay are those of the native build, and one bit changed is noticed", async () => {
  await visit("#tab=same-bits");
  await page.locator("#digests-verdict.good").waitFor();
  assert.equal(await page.innerText("#digests-verdict"), "92 of 92 digests are those of the native build.");
  await page.locator(".function").first().focus();
  await page.keyboard.press("ArrowRight");
  assert.match(await page.innerText("#digest-details"), /^KXV3Normalise: [0-9a-f]{16}, here and natively$/);
  await page.locator("#replay-verdict.good").waitFor({ timeout: 90000 });
  assert.equal(await page.locator("#checkpoints .same").count(), 10);
  await page.click("#replay-bit");
  await page.locator("#checkpoints .other").first().waitFor();
  assert.equal(await page.locator("#checkpoints .same").count(), 0);
  await page.click("#replay-again");
  await page.locator("#checkpoints .same").first().waitFor();
});

test("any address, a narrow screen, and both themes", async () => {
  const background = () => page.evaluate(() => getComputedStyle(document.documentElement).backgroundColor);
  await visit("#tab=none&p=1,2&r=a,b,c&order=&ray=1,2&eye=NaN,1&box=Infinity,0,0,1,1,1&unknown=1", { width: 360, height: 740, colorScheme: "dark" });
  assert.equal(await page.inputValue("input[type=number][data-at=p0]"), "0.5");
  const dark = await background();
  await page.click("#theme");
  assert.notEqual(await background(), dark);
  for (const tab of ["place", "pick", "same-bits"]) {
    await page.click(`#tab-${tab}`);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 360, tab);
  }
});
