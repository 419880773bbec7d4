// Writes the package's modules, from the description of the library and from the library as WebAssembly:
//
//   core.js, index.js    the functions; core.d.ts, index.d.ts their types and contracts
//   wasm.js              the WebAssembly
//
// node generate.mjs KXMATHS5.JSON FOLDER KXMATHS5.WASM
//
// Without WebAssembly it writes what that is made with: everyday.c, exports of the functions that are inline in C.
import { readFile, writeFile } from "node:fs/promises";
import { deflateSync } from "node:zlib";

const [, , apiPath, folder, program] = process.argv;
const api = JSON.parse(await readFile(apiPath, "utf8"));
const records = new Map(api.records.map((each) => [each.name, each]));
const highest = new Map(api.enumerations.map((each) => [each.name, each.values.length - 1]));
// Words that the language keeps for itself get an underscore.
const reserved = new Set(["in"]);
const jsName = (name) => (reserved.has(name) ? `${name}_` : name);
// This status says how an output was made, not that there is none.
const alwaysWrites = new Set(["kx_look_at"]);

/** How many 32-bit numbers a type has. */
function size(type) {
  const record = records.get(type);
  return record ? (record.same_as ? size(record.same_as) : record.size / 4) : 1;
}

/** What the generator has to know of one function. */
function plan(described) {
  const counts = new Set(described.arguments.map((each) => each.count).filter(Boolean));
  const operands = described.arguments.filter((each) => !counts.has(each.name)).map((each) => ({
    ...each,
    js: jsName(each.name),
    size: each.shape ? each.shape[0] : size(each.type),
    isIn: each.role !== "out",
    isOut: each.role !== "in",
    isRecord: each.by === "address" && (records.has(each.type) || Boolean(each.shape)),
  }));
  operands.forEach((each, i) => { each.slot = i; });
  const outputs = operands.filter((each) => each.isOut);
  return {
    ...described,
    js: described.name.replace(/^kx_/, ""),
    symbol: described.name,
    operands,
    inputs: operands.filter((each) => each.isIn),
    outputs,
    array: operands.find((each) => each.count && each.isIn),
    vertices: operands.find((each) => each.indexed_by),
    isStatus: described.result.type === "int32" && described.result.text.startsWith("0 for done"),
    changesInPlace: described.result.type === "int32" && outputs.some((each) => each.role === "in,out"),
  };
}

const label = (plan, each) => `"${plan.js}: ${each.js}"`;
/** The number of an argument's slot; two outputs that may be one record, and are, have one. */
function slot(plan, each) {
  const twin = plan.outputs.find((other) => other.slot < each.slot && each.isOut && !each.isIn && each.may_be?.includes(other.name));
  return twin ? `(${each.js} === ${twin.js} ? ${twin.slot} : ${each.slot})` : String(each.slot);
}

const isHidden = (each) => each.by === "address" && !each.isRecord;

/** The outputs that a caller may give an array for. */
const given = (plan) => plan.outputs.filter((each) => !isHidden(each) && !plan.changesInPlace);

/** Those that have a parameter of their own: an input called out is written in place. */
const optional = (plan) => given(plan).filter((each) => !(each.isIn && each.js === "out"));

/** The name of an optional parameter: an output that is an input too has another. */
const parameter = (plan, each) => (each.isIn ? "out" : each.js);

function parameters(plan) {
  const make = (each) => {
    const made = each.type === "KXTriangle" ? "Uint32Array(17)" : `Float32Array(${plan.array ? `${plan.array.js}?.length` : each.size})`;
    return `${parameter(plan, each)} = new ${made}`;
  };
  return [...plan.inputs.map((each) => each.js), ...optional(plan).map(make)].join(", ");
}

/** The lines that bring one input into memory. */
function bring(plan, each) {
  const name = label(plan, each);
  if (each.by === "value") {
    if (each.type === "float") return [`heap.number(${each.js}, ${name});`];
    return [`heap.index(${each.js}, ${each.range?.[1] ?? 4294967295}, ${name});`];
  }
  if (each.type === "KXTriangle") return [`heap.putTriangle(${each.slot}, ${each.js}, ${plan.vertices.js}, ${name});`];
  if (each === plan.vertices) {
    if (typeof each.indexed_by === "string") return []; // Brought with the triangle.
    return [`heap.putVertices(${each.slot}, [${each.indexed_by.join(", ")}], ${each.js}, "${plan.js}: a corner");`];
  }
  if (isHidden(each)) return [`heap.number(${each.js}, ${name});`, `floats[slot(${each.slot}) >> 2] = ${each.js};`];
  return [`put${each.size}(${each.slot}, ${each.js}, ${name});`];
}

/** The argument that C gets. */
function passed(plan, argument) {
  const each = plan.operands.find((operand) => operand.name === argument.name);
  if (each.by === "value") return plan.vertices && plan.vertices.indexed_by.includes?.(each.name) &&
    Array.isArray(plan.vertices.indexed_by) ? String(plan.vertices.indexed_by.indexOf(each.name)) : each.js;
  if (each.may_be_null && !isHidden(each)) return `${parameter(plan, each)} === null ? 0 : slot(${slot(plan, each)})`;
  return `slot(${each.slot})`;
}

/** A function of an array form. */
function arrayFunction(plan) {
  const head = plan.inputs.filter((each) => each !== plan.array).flatMap((each) => bring(plan, each));
  const args = plan.arguments.map((each) => {
    const operand = plan.operands.find((one) => one.name === each.name);
    if (!operand) return "count";
    if (operand === plan.array) return plan.outputs[0] === operand ? "target" : "source";
    return operand.count ? "target" : passed(plan, each);
  });
  // What is changed in place is copied to where it goes first.
  const copy = plan.outputs[0] === plan.array
    ? [`  if (source !== target) heap.floats.copyWithin(target >> 2, source >> 2, (source >> 2) + count * ${plan.array.size});`] : [];
  return [...head,
    `return heap.many(${plan.array.js}, ${parameter(plan, plan.outputs[0])}, ${plan.array.size}, "${plan.js}", "${plan.array.js}", (count, source, target) => {`,
    ...copy, `  w.${plan.symbol}(${args.join(", ")});`, "});"];
}

function value(plan, each) {
  if (isHidden(each)) return `floats[slot(${each.slot}) >> 2]`;
  const name = parameter(plan, each);
  if (each.type === "KXTriangle") return `triangleOf(${name}, slot(${each.slot}) >> 2, [${plan.vertices.indexed_by.join(", ")}])`;
  const read = `get${each.size}(${slot(plan, each)}, ${name})`;
  return each.may_be_null ? `${name} === null ? null : ${read}` : read;
}

function ordinaryFunction(plan) {
  // Vertices come last: their indices have been looked at then.
  const inOrder = plan.inputs.filter((each) => each !== plan.vertices).concat(plan.inputs.filter((each) => each === plan.vertices));
  const lines = inOrder.flatMap((each) => bring(plan, each));
  // An order that is none leaves a part of an output as it was.
  const mayWriteNothing = plan.inputs.some((each) => each.type === "KXRotationOrder");
  for (const each of given(plan)) {
    const name = parameter(plan, each);
    if (each.type === "KXTriangle") {
      lines.push(`heap.triangle(${name}, "${plan.js}: ${name}");`);
      continue;
    }
    const check = each.isIn || !mayWriteNothing ? `check(${name}, ${each.size}, "${plan.js}: ${name}");`
      : `put${each.size}(${each.slot}, ${name}, "${plan.js}: ${name}");`;
    lines.push(each.may_be_null ? `if (${name} !== null) ${check}` : check);
  }
  const call = `w.${plan.symbol}(${plan.arguments.map((each) => passed(plan, each)).join(", ")})`;
  if (plan.changesInPlace) {
    const [changed] = plan.outputs;
    return [...lines, `const result = ${call};`, `get${changed.size}(${changed.slot}, ${changed.js});`, "return result === 1;"];
  }
  if (!plan.outputs.length) {
    const result = { int32: `${call} === 1`, uint32: `${call} >>> 0`, double: call }[plan.result.type];
    return [...lines, `return ${result};`];
  }
  const values = plan.outputs.map((each) => [parameter(plan, each), value(plan, each)]);
  const all = values.length === 1 ? values[0][1] : `{ ${values.map(([name, each]) => `${name}: ${each}`).join(", ")} }`;
  if (plan.result.type === "void") return [...lines, `${call};`, `return ${all};`];
  if (plan.result.type === "double") return [...lines, `const result = ${call};`, `return { result, out: ${all} };`];
  if (alwaysWrites.has(plan.symbol)) return [...lines, `${call};`, `return ${all};`];
  const good = plan.isStatus ? 0 : 1;
  const verdictAlone = plan.outputs.length === 1 && plan.outputs[0].may_be_null
    ? [`if (${parameter(plan, plan.outputs[0])} === null) return result === 1;`] : [];
  // What leaves its outputs as they were is called once more, with what is in them.
  const again = given(plan).filter((each) => !each.isIn && each.type !== "KXTriangle").map((each) => {
    const put = `put${each.size}(${each.slot}, ${parameter(plan, each)}, "")`;
    return each.may_be_null ? `  if (${parameter(plan, each)} !== null) ${put};` : `  ${put};`;
  });
  return [...lines, `const result = ${call};`, ...verdictAlone, `if (result !== ${good}) {`, ...again, `  ${call};`,
    ...values.map(([, each]) => `  ${each.replace(/^(\w+) === null \? null : /, "if ($1 !== null) ")};`), "  return null;", "}", `return ${all};`];
}

function functionText(plan) {
  if (plan.symbol === "KXM4Mult") return "  KXM4Mult,";
  const body = plan.array ? arrayFunction(plan) : ordinaryFunction(plan);
  if (plan.symbol === "KXM4Inverse") {
    body.unshift("const inverse = invertAffine(m, out);", "if (inverse !== undefined) return inverse;");
  }
  return `  ${plan.js}(${parameters(plan)}) {\n${body.map((line) => `    ${line}`).join("\n")}\n  },`;
}

// --- types and contracts

function typeOf(each) {
  if (each.by === "value" || isHidden(each)) return highest.has(each.type) ? each.type : "number";
  return each.type === "KXTriangle" ? "Uint32Array" : "Float32Array";
}

function returnType(plan) {
  const one = (each) => (isHidden(each) ? "number" : typeOf(each)) + (each.may_be_null ? " | null" : "");
  if (plan.array) return "Float32Array";
  if (plan.changesInPlace) return "boolean";
  if (!plan.outputs.length) return plan.result.type === "int32" ? "boolean" : "number";
  const all = plan.outputs.length === 1 ? one(plan.outputs[0]).replace(" | null", "")
    : `{ ${plan.outputs.map((each) => `${parameter(plan, each)}: ${one(each)}`).join("; ")} }`;
  if (plan.result.type === "double") return `{ result: number; out: ${all} }`;
  if (plan.result.type === "void" || alwaysWrites.has(plan.symbol)) return all;
  const verdict = plan.outputs.length === 1 && plan.outputs[0].may_be_null ? " | boolean" : "";
  return `${all} | null${verdict}`;
}

function shapeText(each) {
  if (each.by === "value" || isHidden(each)) return "";
  if (each.type === "KXTriangle") return " (17 words)";
  return each.count || each.indexed_by ? ` (${each.size} floats each)` : ` (${each.size} floats)`;
}

function declaration(plan) {
  const notes = Object.entries(plan.notes).filter(([name]) => name !== "Null" && name !== "Aliasing");
  const text = [plan.brief, plan.text, ...notes.map(([name, note]) => `${name}: ${note}`)].filter(Boolean).join("\n\n");
  const lines = text.split("\n").concat("",
    [...plan.inputs, ...given(plan).filter((each) => !each.isIn)].map((each) => `@param ${each.js} ${each.text}${shapeText(each)}`));
  if (plan.result.text) lines.push(`@returns ${plan.result.text}`);
  const own = optional(plan).map((each) => `${parameter(plan, each)}?: ${typeOf(each)}${each.may_be_null ? " | null" : ""}`);
  const required = plan.inputs.map((each) => `${each.js}: ${typeOf(each)}`);
  const comment = lines.map((line) => `   * ${line}`.trimEnd()).join("\n").replaceAll("*/", "* /");
  return `  /**\n${comment}\n   */\n  ${plan.js}(${[...required, ...own].join(", ")}): ${returnType(plan)};`;
}

const plans = [...api.functions, ...api.everyday].map(plan);
const values = [...api.constants, ...api.enumerations.flatMap((each) => each.values)];

// The bytes of a slot, as heap.js has them.
const slotBytes = 80;
const sizes = [...new Set(plans.flatMap((each) => each.operands)
  .filter((each) => each.isRecord && !each.count && !each.indexed_by && each.type !== "KXTriangle").map((each) => each.size))]
  .sort((a, b) => a - b);

/** Copies a record of so many floats into a slot, and out of it. */
function copiers(count) {
  const floats = [...Array(count).keys()];
  return `  function put${count}(index, from, name) {
    if (!(from instanceof Float32Array && from.length === ${count})) refuseRecord(from, ${count}, name);
    const at = first + index * ${slotBytes / 4};
${floats.map((i) => `    floats[at + ${i}] = from[${i}];`).join("\n")}
  }
  function get${count}(index, to) {
    const at = first + index * ${slotBytes / 4};
${floats.map((i) => `    to[${i}] = floats[at + ${i}];`).join("\n")}
    return to;
  }`;
}

const core = `// Made by generate.mjs from the description of the library.
import { KXM4Mult, invertAffine } from "./arithmetic.js";
import { Heap, check, refuseRecord } from "./heap.js";

${values.map((each) => `export const ${each.name} = ${each.value};`).join("\n")}

/** The fields of the records that have names for them, in their order. */
export const fields = {
${api.records.filter((each) => !each.same_as && each.fields.every((field) => field.type === "float" && !field.shape.length))
    .map((each) => `  ${each.name}: [${each.fields.map((field) => `"${field.name}"`).join(", ")}],`).join("\n")}
};

/** A record by the names of its fields; those that aren't named are 0. */
export function record(type, values) {
  const names = fields[type];
  if (!names) throw new TypeError(\`no record with named numbers is called \${type}\`);
  for (const name of Object.keys(values)) {
    if (!names.includes(name)) throw new TypeError(\`\${type} has no field \${name}\`);
  }
  return Float32Array.from(names, (name) => values[name] ?? 0);
}

function functions(heap) {
  const { exports: w, floats, slots } = heap;
  const first = slots >> 2;
  const slot = (index) => slots + index * ${slotBytes};

  // Written out, since a loop over a record's floats takes longer than most functions.
${sizes.map(copiers).join("\n")}

  function triangleOf(to, at, corners) {
    to.set(heap.words.subarray(at, at + 17));
    for (const corner of [1, 5, 9]) to[corner] = corners[to[corner]];
    return to;
  }
  return {
${plans.map(functionText).join("\n").replaceAll(/^/gm, "  ")}
  };
}

/** All functions, with a memory of their own for nothing but one call. */
export function create(module) {
  return functions(new Heap(module));
}

/**
 * All functions, and a memory that the caller works in: array is \`floats\` floats long, and so are its
 * subarrays; array forms whose input and output are in it copy nothing.
 */
export function createWorkspace(module, floats) {
  const heap = new Heap(module, floats);
  return { array: heap.array, ...functions(heap) };
}
`;

const types = `// Made by generate.mjs from the description of the library.
${api.enumerations.map((each) => `/** ${each.text.replaceAll("\n", "\n * ")} */\nexport type ${each.name} = number;`).join("\n")}
${values.map((each) => `${each.text ? `/** ${each.text} */\n` : ""}export const ${each.name}: number;`).join("\n")}

/** The fields of the records that have names for them, in their order. */
export const fields: Record<string, string[]>;
/** A record by the names of its fields; those that aren't named are 0. */
export function record(type: string, values: Record<string, number>): Float32Array;

export interface Functions {
${plans.map(declaration).join("\n")}
}

export interface Workspace extends Functions {
  /** The caller's part of the memory. */
  readonly array: Float32Array;
}

/** All functions, from the compiled module: for workers, and where code may not be compiled at run time. */
export function create(module: WebAssembly.Module): Functions;
/** All functions, and a memory of so many floats that array forms work in without copying. */
export function createWorkspace(module: WebAssembly.Module, floats: number): Workspace;
`;

const cType = (argument) => {
  const kinds = { int32: "int32_t", uint32: "uint32_t" };
  const type = kinds[argument.type] ?? argument.type;
  return argument.by === "address" ? `${argument.role === "in" ? "const " : ""}${type} *${argument.name}` : `${type} ${argument.name}`;
};
const cResult = { void: "void", double: "double", int32: "int32_t", uint32: "uint32_t" };
const everyday = `/* Made by generate.mjs: what is inline in C, as exports. */
#include <kxmaths5.h>
#include <kxmaths5/everyday.h>

${api.everyday.map((each) => `__attribute__((export_name("${each.name}"))) ${cResult[each.result.type]} js_${each.name}(${each.arguments.map(cType).join(", ")})
{
    ${each.result.type === "void" ? "" : "return "}${each.name}(${each.arguments.map((one) => one.name).join(", ")});
}`).join("\n\n")}
`;

const main = `// Made by generate.mjs: the functions of the library, ready to be called.
import { create, createWorkspace as workspaceOf } from "./core.js";
import { bytes } from "./wasm.js";

export * from "./core.js";

const module = await WebAssembly.compile(await bytes());
const functions = create(module);
export const {
${plans.map((each) => `  ${each.js},`).join("\n")}
} = functions;

export function createWorkspace(floats) {
  return workspaceOf(module, floats);
}
`;
const mainTypes = `// Made by generate.mjs from the description of the library.
import type { Functions, Workspace } from "./core.js";

export * from "./core.js";
${plans.map((each) => `export const ${each.js}: Functions["${each.js}"];`).join("\n")}
/** All functions, and a memory of so many floats that array forms work in without copying. */
export function createWorkspace(floats: number): Workspace;
`;

// Debian's node 18 does not know "deflate-raw".
const embed = async () => `// Made by generate.mjs: the WebAssembly, deflated.
const text = "${deflateSync(await readFile(program), { level: 9 }).toString("base64")}";

/** The WebAssembly, to be compiled. */
export async function bytes() {
  const deflated = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
  const stream = new Blob([deflated]).stream().pipeThrough(new DecompressionStream("deflate"));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}
`;
const wasmTypes = `/** The WebAssembly, to be compiled; it imports nothing. */
export function bytes(): Promise<Uint8Array>;
`;

const files = program
  ? { "core.js": core, "core.d.ts": types, "index.js": main, "index.d.ts": mainTypes, "wasm.js": await embed(), "wasm.d.ts": wasmTypes }
  : { "everyday.c": everyday };
for (const [name, text] of Object.entries(files)) await writeFile(`${folder}/${name}`, text);
