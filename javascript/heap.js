// The memory of one instance of the library, and how numbers get in and out of it. It never grows once
// it is made, so that views of it never go stale.

const PAGE = 65536;
/** Bytes for each argument's record, and for a block of an array on its way through. */
const SLOT = 80;
const BLOCK = 3 * 65536;

function refuse(Kind, name, problem) {
  throw new Kind(`${name} ${problem}`);
}

function kindOf(value) {
  return value === null ? "null" : value?.constructor?.name ?? typeof value;
}

/** Says what is wrong with what isn't a record of so many floats. */
export function refuseRecord(record, count, name) {
  if (!(record instanceof Float32Array)) refuse(TypeError, name, `is of the type ${kindOf(record)}, not Float32Array`);
  refuse(RangeError, name, `has ${record.length} floats, not ${count}`);
}

/** Refuses what isn't a record of so many floats. */
export function check(record, count, name) {
  if (!(record instanceof Float32Array && record.length === count)) refuseRecord(record, count, name);
}

export class Heap {
  /** @param {WebAssembly.Module} module
   *  @param {number} floats how many floats the caller gets of the memory */
  constructor(module, floats = 0) {
    if (!(Number.isInteger(floats) && floats >= 0)) refuse(TypeError, "createWorkspace: floats", `is ${String(floats)}, not a whole number`);
    const instance = new WebAssembly.Instance(module, {});
    this.exports = instance.exports;
    const { memory, __heap_base } = this.exports;
    this.slots = (__heap_base.value + 15) & ~15;
    this.block = this.slots + 16 * SLOT;
    const own = this.block + BLOCK;
    const pages = Math.ceil((own + 4 * floats) / PAGE);
    memory.grow(Math.max(0, pages - memory.buffer.byteLength / PAGE));
    this.floats = new Float32Array(memory.buffer);
    this.words = new Uint32Array(memory.buffer);
    /** The caller's part. */
    this.array = new Float32Array(memory.buffer, own, floats);
  }

  slot(index) {
    return this.slots + index * SLOT;
  }

  /** A triangle to be written to. */
  triangle(to, name) {
    if (!(to instanceof Uint32Array)) refuse(TypeError, name, `is of the type ${kindOf(to)}, not Uint32Array`);
    if (to.length !== 17) refuse(RangeError, name, `has ${to.length} words, not 17`);
  }

  number(value, name) {
    if (typeof value !== "number") refuse(TypeError, name, `is of the type ${kindOf(value)}, not a number`);
    return value;
  }

  index(value, highest, name) {
    if (typeof value !== "number") refuse(TypeError, name, `is of the type ${kindOf(value)}, not a number`);
    if (!(Number.isInteger(value) && value >= 0 && value <= highest)) {
      refuse(RangeError, name, `is ${value}, not an integer from 0 to ${highest}`);
    }
    return value;
  }

  /**
   * A triangle and the three vertices that it has of an array, in slots one after the other: there the
   * vertices are 0, 1 and 2.
   */
  putTriangle(index, triangle, vertices, name) {
    if (!(triangle instanceof Uint32Array)) refuse(TypeError, name, `is of the type ${kindOf(triangle)}, not Uint32Array`);
    if (triangle.length !== 17) refuse(RangeError, name, `has ${triangle.length} words, not 17`);
    const at = this.slot(index) >> 2;
    this.words.set(triangle, at);
    for (let corner = 0; corner < 3; corner++) this.words[at + 4 * corner + 1] = corner;
    this.putVertices(index + 1, [triangle[1], triangle[5], triangle[9]], vertices, name);
  }

  putVertices(index, corners, vertices, name) {
    if (!(vertices instanceof Float32Array)) refuse(TypeError, `${name.split(":")[0]}: vertices`, `is of the type ${kindOf(vertices)}, not Float32Array`);
    const at = this.slot(index) >> 2;
    corners.forEach((vertex, corner) => {
      if (3 * vertex + 2 >= vertices.length) {
        refuse(RangeError, name, `has the vertex ${vertex}, and vertices has ${Math.floor(vertices.length / 3)}`);
      }
      this.floats.set(vertices.subarray(3 * vertex, 3 * vertex + 3), at + 3 * corner);
    });
  }

  /**
   * Calls an array form: through this memory block by block, or where the arrays are if they are in it.
   * call(count, from, to) works in place too.
   */
  many(from, to, size, name, given, call) {
    for (const [array, what] of [[from, given], [to, "out"]]) {
      if (!(array instanceof Float32Array)) refuse(TypeError, `${name}: ${what}`, `is of the type ${kindOf(array)}, not Float32Array`);
      if (array.length % size) refuse(RangeError, `${name}: ${what}`, `has ${array.length} floats, no multiple of ${size}`);
    }
    if (from.length !== to.length) refuse(RangeError, `${name}: out`, `has ${to.length} floats, not ${from.length}`);
    const overlaps = from.buffer === to.buffer && from.byteOffset !== to.byteOffset &&
      Math.abs(from.byteOffset - to.byteOffset) < from.byteLength;
    const { buffer } = this.floats;
    if (from.buffer === buffer && to.buffer === buffer && !overlaps) {
      call(from.length / size, from.byteOffset, to.byteOffset);
      return to;
    }
    const source = overlaps ? from.slice() : from;
    const most = Math.floor(BLOCK / 4 / size) * size;
    const at = this.block >> 2;
    for (let done = 0; done < source.length; done += most) {
      const part = source.subarray(done, done + most);
      this.floats.set(part, at);
      call(part.length / size, this.block, this.block);
      to.set(this.floats.subarray(at, at + part.length), done);
    }
    return to;
  }
}
