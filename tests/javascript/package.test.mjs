// The package as npm packs it: every function at the native bits, and what it refuses.
import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import test from "node:test";
import { pathToFileURL } from "node:url";

import * as kx from "kxmaths5";
import { create } from "kxmaths5/core";
import { bytes } from "kxmaths5/wasm";

import { digests } from "./digest_host.mjs";

const root = pathToFileURL(`${process.cwd()}/`);
const api = JSON.parse(readFileSync(new URL("api/kxmaths5.json", root)));
const floats = (...numbers) => new Float32Array(numbers);
const vertices = floats(0, 0, 1, 4, 0, 1, 0, 4, 1);

const folder = new URL("./", import.meta.resolve("kxmaths5"));
const types = ["core", "index"].map((name) => readFileSync(new URL(`${name}.d.ts`, folder), "utf8")).join("");
/** Each function's parameters as its type has them, with something that fits. */
const signatures = Array.from(types.matchAll(/\/\*\*\n((?:   \*.*\n)+)   \*\/\n  (\w+)\((.*)\): /g), ([, text, name, list]) => [
  name,
  list.split(", ").map((each) => {
    const [, parameter, optional, type] = /(\w+)(\??): (.*)/.exec(each);
    const floats = RegExp(`@param ${parameter} .*\\((\\d+) `).exec(text)?.[1];
    const made = { Float32Array: new Float32Array(floats), Uint32Array: new Uint32Array(17) }[type] ?? 0;
    return { parameter, optional, type, good: optional ? undefined : made };
  }),
]);

test("digests of all functions are the native ones", async () => {
  const lines = [];
  const program = readFileSync(process.env.KX_DIGEST_PROGRAM);
  await digests(program, api, kx, (text) => lines.push(text));
  assert.equal(lines.join(""), readFileSync(new URL("tools/digest/digests.txt", root), "utf8"));
});

test("outputs are made, written to when given, and null on failure", () => {
  const m = kx.KXM4Translate(1, 2, 3);
  const inverse = floats(...Array(16).fill(7));
  assert.equal(kx.KXM4Inverse(m, inverse), inverse);
  assert.deepEqual([...inverse.filter((_, i) => i % 4 === 3)], [-1, -2, -3, 1]);
  assert.equal(kx.KXM4Inverse(new Float32Array(16).fill(0, 0).fill(1, 15), inverse), null);
  assert.equal(inverse[3], -1, "a refused affine inverse leaves its output");
  const perspective = kx.KXM4Scale(1, 1, 1);
  perspective[12] = kx.KX_TOLERANCE; // Just enough not to be taken for 0.
  assert.equal(kx.KXM4Inverse(perspective)[12], -perspective[12]);
  assert.equal(kx.KXLineIxBox(floats(0, 9, 0, 1, 9, 0), floats(0, 0, 0, 1, 1, 1)), null);
  assert.equal(kx.KXLineIxBox(floats(-1, -1, -1, 1, 1, 1), floats(0, 0, 0, 1, 1, 1), null), true);
  assert.deepEqual(kx.KXM4Orientation(0, 0, 0, 0, null).matrix, null);
  assert.deepEqual(kx.KXV3Normalise(floats(3, 0, 4)), { result: 5, out: floats(0.6, 0, 0.8) });
  const box = floats(0, 0, 0, 1, 1, 1);
  assert.equal(kx.KXIsValidBox(box), true);
  assert.equal(kx.KXPutPointInBox(floats(5, 0, 0), box), true);
  assert.equal(box[3], 5);
  const m43 = new Float32Array(16).fill(9);
  assert.equal(kx.KXM43Mult(m, m, m43), m43);
  assert.deepEqual([...m43.slice(12)], [9, 9, 9, 9]);
});

test("inputs are left as they are, outputs may be inputs", () => {
  const m = kx.KXM4Translate(1, 2, 3);
  const before = m.slice();
  const v = floats(3, 0, 4);
  assert.deepEqual(kx.KXV3Scale(v, 10), floats(6, 0, 8));
  assert.deepEqual(v, floats(3, 0, 4));
  assert.equal(kx.KXV3Scale(v, 10, v), v);
  assert.deepEqual(kx.KXM4Mult(m, m), kx.KXM4Translate(2, 4, 6));
  assert.deepEqual(m, before);
  assert.equal(kx.KXM4Mult(m, m, m), m);
  assert.deepEqual(m, kx.KXM4Translate(2, 4, 6));
});

test("arrays of any length, copied, in place, overlapping, and in a workspace", () => {
  const m = kx.KXM4Orientation(0.1, 0.2, 0.3, kx.KX_ORDER_XYZ).matrix;
  m[3] = 5;
  const count = 40001; // More than two blocks.
  const points = Float32Array.from({ length: 3 * count }, (_, i) => Math.fround(Math.sin(i) * 9));
  const wanted = new Float32Array(3 * count);
  for (let i = 0; i < count; i++) kx.KXM4P3I1(m, points.slice(3 * i, 3 * i + 3), wanted.subarray(3 * i, 3 * i + 3));
  assert.deepEqual(kx.KXM4NP3I1(m, points), wanted);
  const shared = new Float32Array(3 * count + 3);
  shared.set(points);
  kx.KXM4NP3I1(m, shared.subarray(0, 3 * count), shared.subarray(3));
  assert.deepEqual(shared.subarray(3), wanted);
  const inPlace = points.slice();
  assert.equal(kx.KXM4NP3I1(m, inPlace, inPlace), inPlace);
  assert.deepEqual(inPlace, wanted);
  const space = kx.createWorkspace(6 * count);
  space.array.set(points);
  const [from, to] = [space.array.subarray(0, 3 * count), space.array.subarray(3 * count)];
  assert.equal(space.KXM4NP3I1(m, from, to), to);
  assert.deepEqual(to.slice(), wanted);
  assert.deepEqual(space.KXM4NP3I1(m, from, new Float32Array(3 * count)), wanted, "out of the workspace");
  assert.deepEqual(space.KXP3ChangeNUnits(kx.KX_UNIT_FOOT, kx.KX_UNIT_INCH, from, to)[0], Math.fround(points[0] * 12));
  kx.createWorkspace(6 * count).array.fill(7); // Another memory.
  assert.deepEqual(from.slice(), points);
  for (const size of ["abc", -1, 1.5]) assert.throws(() => kx.createWorkspace(size), /^TypeError: createWorkspace: floats is .*, not a whole number$/);
  assert.equal(kx.KXM4NP3I1(m, new Float32Array(0)).length, 0);
});

test("array forms of every stride in a workspace, apart, in place and overlapping", () => {
  const units = [kx.KX_UNIT_FOOT, kx.KX_UNIT_INCH];
  const [m3, m4] = [9, 16].map((length) => Float32Array.from({ length }, (_, i) => i - 5));
  const numbers = Float32Array.from({ length: 24 }, (_, i) => i + 1);
  for (const [name, ...first] of [
    ["KXM3NP2I0", m3], ["KXM3NP2I1", m3], ["KXM4NP3I0", m4], ["KXM4NP3I1", m4], ["KXM4NP4", m4],
    ["KXP3ChangeNUnits", ...units], ["KXP4ChangeNUnits", ...units], ["KXPlaneChangeNUnits", ...units],
  ]) {
    for (const shift of [-12, -4, 0, 4, 12, 24]) {
      const { array, [name]: call } = kx.createWorkspace(60);
      const [from, to] = [array.subarray(12, 36), array.subarray(12 + shift, 36 + shift)];
      from.set(numbers);
      call(...first, from, to);
      assert.deepEqual(to.slice(), kx[name](...first, numbers), `${name}, shifted by ${shift}`);
    }
  }
});

test("triangles, rays and the everyday functions", () => {
  const triangle = kx.triangle(vertices, 0, 1, 2);
  const hit = kx.KXRayIxTriangle(floats(1, 1, 5, 0, 0, -1), triangle, vertices);
  assert.deepEqual(hit, floats(1, 1, 1));
  assert.deepEqual(kx.barycentric(triangle, vertices, hit), floats(0.5, 0.25, 0.25));
  const far = new Float32Array(3 * 1000);
  far.set(vertices, 2700);
  assert.deepEqual(kx.KXRayIxTriangle(floats(1, 1, 5, 0, 0, -1), kx.triangle(far, 901, 902, 900), far), floats(1, 1, 1));
  assert.deepEqual([1, 5, 9].map((corner) => kx.triangle(far, 901, 902, 900)[corner]).sort(), [900, 901, 902]);
  const { view } = kx.look_at(floats(0, 0, 9), floats(0, 0, 0), floats(0, 1, 0));
  assert.equal(view[11], -9);
  assert.ok(kx.look_at(vertices.slice(3, 6), vertices.slice(3, 6), floats(0, 1, 0)).view, "a view all the same");
  assert.equal(kx.dot(floats(1, 2, 3), floats(4, 5, 6)), 32);
});

test("the package has its files, and its types the names, parameters and texts of what it exports", () => {
  const modules = ["core", "index", "wasm"].flatMap((name) => [`${name}.d.ts`, `${name}.js`]);
  assert.deepEqual(readdirSync(folder).sort(), ["LICENSE", "README.md", "arithmetic.js", "heap.js", "package.json", ...modules].sort());
  const declared = types.matchAll(/^export (?:const|function) (\w+)/gm);
  assert.deepEqual([...new Set(Array.from(declared, ([, name]) => name))].sort(), Object.keys(kx).sort());
  assert.equal(signatures.length, api.functions.length + api.everyday.length);
  const plain = (text) => text.replaceAll(/[\s*/]+/g, " ");
  const documented = plain(types);
  for (const { brief, text, notes: { Null, Aliasing, ...notes } } of [...api.functions, ...api.everyday]) {
    for (const each of [brief, text, ...Object.values(notes)]) assert.ok(documented.includes(plain(each)), each);
  }
  for (const [name, parameters] of signatures) {
    const made = /\((.*)\) \{/.exec(kx[name])[1].split(", ").map((each) => each.replace(/ = .*/, "?"));
    assert.deepEqual(parameters.map(({ parameter, optional }) => parameter + optional), made, name);
  }
});

test("of every function, arguments of another type or length are refused by their names", () => {
  for (const [name, parameters] of signatures) {
    for (const [at, { parameter, type }] of parameters.entries()) {
      const isArray = type.includes("Array");
      const wrong = ["1", Array(12).fill(0), new Float64Array(12), ...isArray ? [1, new Float32Array(1), new Uint32Array(1)] : [undefined, floats(1)]];
      if (isArray && !type.includes("null")) wrong.push(null);
      for (const value of wrong) {
        assert.throws(() => kx[name](...parameters.map(({ good }, i) => (i === at ? value : good))),
          ({ message }) => message.startsWith(`${name}: `) && message.includes(parameter), `${name}: ${parameter}`);
      }
    }
  }
});

test("a module that the caller compiled", async () => {
  const module = new WebAssembly.Module(await bytes());
  assert.deepEqual(WebAssembly.Module.imports(module), []);
  assert.equal(create(module).KXBitCount(0xffffffff), 32);
});

const m = new Float32Array(16);
const moved = new Float32Array(16);
structuredClone(moved, { transfer: [moved.buffer] });
for (const [what, call, Kind, words] of [
  ["null", () => kx.KXM4P3I1(m, null), TypeError, "KXM4P3I1: p is of the type null, not Float32Array"],
  ["what another thread has", () => kx.KXM4Mult(m, moved), RangeError, "b has 0 floats, not 16"],
  ["a short record", () => kx.KXM4Mult(m, m.subarray(1)), RangeError, "b has 15 floats, not 16"],
  ["a long output", () => kx.KXM4Mult(m, m, new Float32Array(17)), RangeError, "out has 17 floats"],
  ["a length", () => kx.KXM4NP3I1(m, m), RangeError, "no multiple of 3"],
  ["lengths", () => kx.KXM4NP3I1(m, m.subarray(1), m.subarray(4)), RangeError, "out has 12 floats, not 15"],
  ["a unit", () => kx.KXChangeUnits(0, 10, 1), RangeError, "to is 10, not an integer from 0 to 9"],
  ["a fraction", () => kx.KXBitCount(1.5), RangeError, "v is 1.5"],
  ["a negative word", () => kx.KXBitCount(-1), RangeError, "v is -1"],
  ["a vertex", () => kx.KXRayIxTriangle(new Float32Array(6), kx.triangle(vertices, 0, 1, 2), vertices.subarray(1)), RangeError, "vertex 2, and vertices has 2"],
  ["a corner", () => kx.triangle(vertices, 0, 1, 3), RangeError, "has the vertex 3"],
  ["a short triangle", () => kx.KXRayIxTriangle(new Float32Array(6), new Uint32Array(16), vertices), RangeError, "has 16 words, not 17"],
  ["a field", () => kx.record("KXPosition", { rotatex: 1 }), TypeError, "no field rotatex"],
  ["a record's name", () => kx.record("KXM4", {}), TypeError, "KXM4"],
]) {
  test(`${what} is refused`, () => assert.throws(call, (error) => error instanceof Kind && error.message.includes(words)));
}
