// The page's compiled part (compiled.cpp), from JavaScript.
import program from "./compiled.wasm";

/** Loads it once; the functions of what it resolves to have a memory of their own for each call. */
export async function loadCompiled() {
  const module = await WebAssembly.compile(program);
  const start = () => {
    const { exports } = new WebAssembly.Instance(module);
    exports._initialize();
    return exports;
  };
  return { hierarchy: (points, triangles) => hierarchy(start(), points, triangles), digests: () => digests(start()), replay: () => replay(start()) };
}

/**
 * A hierarchy of boxes over triangles: what a ray meets first, in microseconds.
 * points: three floats each; triangles: three indices each.
 */
function hierarchy(compiled, points, triangles) {
  const put = (array, View) => {
    const at = compiled.reserve(array.byteLength);
    new View(compiled.memory.buffer, at, array.length).set(array);
    return at;
  };
  const [pointsAt, trianglesAt] = [put(points, Float32Array), put(triangles, Uint32Array)];
  const problem = compiled.set_mesh(pointsAt, points.length / 3, trianglesAt, triangles.length / 3);
  if (problem) throw new RangeError(text(compiled, problem));
  const floats = new Float32Array(compiled.memory.buffer, compiled.cast(), 10);
  return {
    cast(ray) {
      floats.set(ray);
      const triangle = compiled.nearest();
      return triangle < 0 ? null : { triangle, point: floats.slice(6, 9), distance: floats[9] };
    },
  };
}

/** The name of each function, and what computes its digest, as the native program prints it. */
function digests(compiled) {
  const all = [];
  for (let index = 0, at; (at = compiled.function_name(index)); index++) {
    all.push({ name: text(compiled, at), digest: () => hex(compiled.function_digest(index)) });
  }
  return all;
}

/** The simulation of tools/replay, from its start, or with one bit of one body changed. */
function replay(compiled) {
  const at = (compiled.replay_start(0), compiled.replay_picture());
  const part = (View, from, count) => new View(compiled.memory.buffer, at + 4 * from, count);
  return {
    start: (changeABit) => compiled.replay_start(Number(changeABit)),
    step: compiled.replay_step,
    digest: () => hex(compiled.replay_digest()),
    /** Brings up to date what is drawn: corners of boxes, eight for each; rays with two ends; how often a body was seen. */
    draw: compiled.replay_picture,
    corners: part(Float32Array, 0, 126 * 24),
    rays: part(Float32Array, 126 * 24, 8 * 6),
    seen: part(Uint32Array, 126 * 24 + 8 * 6, 120),
  };
}

function text(compiled, at) {
  const bytes = new Uint8Array(compiled.memory.buffer, at);
  return new TextDecoder().decode(bytes.subarray(0, bytes.indexOf(0)));
}

const hex = (word) => BigInt.asUintN(64, word).toString(16).padStart(16, "0");
