// The program that prints the digests, with the package's functions in the place of the library's: what
// it passes by address becomes Float32Arrays over its memory.
const size = (api, type) => {
  const record = api.records.find((each) => each.name === type);
  return record ? (record.same_as ? size(api, record.same_as) : record.size / 4) : 1;
};

const words = (array) => new Uint32Array(array.buffer, array.byteOffset, array.length);

function imported(api, described, call, memory) {
  const { arguments: all, result } = described;
  const counts = new Set(all.map((each) => each.count));
  const isStatus = result.text.startsWith("0 for done");
  return (...values) => {
    const { buffer } = memory();
    const value = new Map(all.map((each, i) => [each.name, values[i]]));
    const hidden = [];
    const view = (each) => {
      const at = value.get(each.name);
      if (each.by === "value") return each.type === "float" ? at : at >>> 0;
      if (at === 0 && each.may_be_null) return null;
      if (each.type === "KXTriangle") return new Uint32Array(buffer, at, 17);
      if (each.indexed_by) {
        const corners = new Uint32Array(buffer, value.get("triangle"), 17);
        return new Float32Array(buffer, at, 3 * (1 + Math.max(corners[1], corners[5], corners[9])));
      }
      if (each.type === "float") return new Float32Array(buffer, at, 1)[0];
      return new Float32Array(buffer, at, size(api, each.type) * (each.count ? value.get(each.count) >>> 0 : 1));
    };
    const isHidden = (each) => each.by === "address" && each.type === "float";
    const inputs = all.filter((each) => each.role !== "out" && !counts.has(each.name));
    const outputs = all.filter((each) => each.role !== "in");
    const inPlace = described.name === "KXPutPointInBox" || described.name === "KXM43Mult";
    const given = inPlace ? [] : outputs.filter((each) => !isHidden(each));
    const nullable = outputs.filter((each) => each.may_be_null && isHidden(each) && value.get(each.name) === 0);
    // Two outputs at one address are one array.
    const arrays = new Map();
    const array = (each) => {
      const at = value.get(each.name);
      if (!arrays.has(at)) arrays.set(at, view(each));
      return arrays.get(at);
    };
    const before = inputs.map(view);
    // Chromium makes a signalling NaN that it copies quiet, as it may; here it gets its bits back.
    const moved = before.filter((each) => each instanceof Float32Array && each.some(Number.isNaN)).flatMap((each) => [...words(each)]);
    const signalling = new Set(moved.filter((word) => (word & 0x7fc00000) === 0x7f800000 && word & 0x3fffff));
    const returned = call(...before, ...given.map(array));
    for (const all of signalling.size ? arrays.values() : []) {
      words(all).forEach((word, i, to) => { if (signalling.has((word & ~0x400000) >>> 0)) to[i] &= ~0x400000; });
    }
    for (const each of outputs.filter((one) => isHidden(one) && !nullable.includes(one))) {
      const number = outputs.length === 1 ? returned : returned[each.name];
      new Float32Array(buffer, value.get(each.name), 1)[0] = number;
    }
    if (result.type === "void") return undefined;
    if (result.type === "double") return outputs.length ? returned.result : returned;
    if (typeof returned === "number") return returned | 0;
    if (typeof returned === "boolean") return Number(returned);
    return Number(isStatus ? returned === null : returned !== null);
  };
}

/** Runs the program; print gets what it writes, piece by piece. */
export async function digests(program, api, functions, print) {
  let instance;
  const memory = () => instance.exports.memory;
  const env = Object.fromEntries(api.functions.map((each) => [
    each.name, imported(api, each, functions[each.name], memory)]));
  // A program that only prints asks nothing else of a system.
  const decoder = new TextDecoder();
  const write = (file, vectors, count, written) => {
    const view = new DataView(memory().buffer);
    let total = 0;
    for (let i = 0; i < count; i++) {
      const at = view.getUint32(vectors + 8 * i, true);
      const length = view.getUint32(vectors + 8 * i + 4, true);
      print(decoder.decode(new Uint8Array(memory().buffer, at, length)));
      total += length;
    }
    view.setUint32(written, total, true);
    return 0;
  };
  const system = new Proxy({}, { get: (_, name) => (name === "fd_write" ? write : () => 0) });
  ({ instance } = await WebAssembly.instantiate(program, { env, wasi_snapshot_preview1: system }));
  instance.exports._start();
}
