// Runs a WebAssembly program that was built for WASI:
//     node --no-warnings --single-threaded-gc wasi.mjs PROGRAM [ARGUMENT...]
// With threads that collect garbage, node 20 crashes now and then at the end of a program whose memory has grown.
import { readFile } from "node:fs/promises";
import { WASI } from "node:wasi";

const wasi = new WASI({ version: "preview1", args: process.argv.slice(2), returnOnExit: true });
const program = await WebAssembly.compile(await readFile(process.argv[2]));
const imports = { wasi_snapshot_preview1: wasi.wasiImport };
process.exitCode = wasi.start(await WebAssembly.instantiate(program, imports));
