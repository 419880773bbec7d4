// Puts the WebAssembly into a module of the package: node embed.mjs KXMATHS5.WASM FOLDER
import { readFile, writeFile } from "node:fs/promises";
import { deflateRawSync } from "node:zlib";

const [, , program, folder] = process.argv;
const text = deflateRawSync(await readFile(program), { level: 9 }).toString("base64");
await writeFile(`${folder}/wasm.js`, `// Made by embed.mjs: the WebAssembly, deflated.
const text = "${text}";

/** The WebAssembly, to be compiled. */
export async function bytes() {
  const deflated = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
  const stream = new Blob([deflated]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}
`);
await writeFile(`${folder}/wasm.d.ts`, `/** The WebAssembly, to be compiled; it imports nothing. */
export function bytes(): Promise<Uint8Array>;
`);
