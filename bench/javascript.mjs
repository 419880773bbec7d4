// The npm package next to gl-matrix and three.js: medians of what is taken in turns, after
// ./scripts/javascript in build/javascript/host: node javascript.mjs [ROUNDS]
import { mat4, vec3 } from "gl-matrix";
import * as kx from "kxmaths5";
import { BufferAttribute, Matrix4 } from "three";

const rounds = Number(process.argv[2] ?? 200);
const records = 64;
const random = () => Float32Array.from({ length: 16 }, (_, i) => (i < 12 ? Math.random() * 2 - 1 : Number(i === 15)));
const a = Array.from({ length: records }, random);
const b = Array.from({ length: records }, random);
const [threeA, threeB] = [a, b].map((all) => all.map((each) => new Matrix4().fromArray(each)));
const out = new Float32Array(16);
const threeOut = new Matrix4();
const every = (call) => () => { for (let i = 0; i < records; i++) call(i); };

const points = Float32Array.from({ length: 3e6 }, () => Math.random());
const moved = new Float32Array(3e6);
const space = kx.createWorkspace(6e6);
space.array.set(points);
const [spaceIn, spaceOut] = [space.array.subarray(0, 3e6), space.array.subarray(3e6)];
const attribute = new BufferAttribute(points.slice(), 3);
const [few, fewMoved, spaceFew, spaceFewMoved] = [points, moved, spaceIn, spaceOut].map((all) => all.subarray(0, 3e3));
const fewAttribute = new BufferAttribute(few.slice(), 3);
const [glIn, glOut] = [vec3.create(), vec3.create()];
function withGlMatrix(from, to) {
  for (let i = 0; i < from.length; i += 3) {
    glIn[0] = from[i]; glIn[1] = from[i + 1]; glIn[2] = from[i + 2];
    vec3.transformMat4(glOut, glIn, a[0]);
    to[i] = glOut[0]; to[i + 1] = glOut[1]; to[i + 2] = glOut[2];
  }
}

const jobs = {
  "product, ns": [1e6 / records, 200, {
    kxmaths5: every((i) => kx.KXM4Mult(a[i], b[i], out)),
    "gl-matrix": every((i) => mat4.multiply(out, a[i], b[i])),
    "three.js": every((i) => threeOut.multiplyMatrices(threeA[i], threeB[i])),
  }],
  "inverse, ns": [1e6 / records, 200, {
    kxmaths5: every((i) => kx.KXM4Inverse(a[i], out)),
    "gl-matrix": every((i) => mat4.invert(out, a[i])),
    "three.js": every((i) => threeOut.copy(threeA[i]).invert()),
  }],
  "a thousand points, µs": [1e3, 10, {
    "kxmaths5, copied": () => kx.KXM4NP3I1(a[0], few, fewMoved),
    "kxmaths5, workspace": () => space.KXM4NP3I1(a[0], spaceFew, spaceFewMoved),
    "gl-matrix": () => withGlMatrix(few, fewMoved),
    "three.js": () => fewAttribute.applyMatrix4(threeA[0]),
  }],
  "a million points, ms": [1, 1, {
    "kxmaths5, copied": () => kx.KXM4NP3I1(a[0], points, moved),
    "kxmaths5, workspace": () => space.KXM4NP3I1(a[0], spaceIn, spaceOut),
    "gl-matrix": () => withGlMatrix(points, moved),
    "three.js": () => attribute.applyMatrix4(threeA[0]),
  }],
};

for (const [name, [unit, calls, ways]] of Object.entries(jobs)) {
  const taken = new Map(Object.keys(ways).map((way) => [way, []]));
  for (let round = 0; round < (calls > 1 ? rounds : Math.ceil(rounds / 6)); round++) {
    for (const [way, call] of Object.entries(ways)) {
      const started = performance.now();
      for (let i = 0; i < calls; i++) call();
      taken.get(way).push(((performance.now() - started) / calls) * unit);
    }
  }
  const medians = [...taken].map(([way, times]) => [way, times.sort((x, y) => x - y)[times.length >> 1]]);
  console.log(name, medians.map(([way, time]) => `${way} ${time.toFixed(1)}`).join("; "));
}
