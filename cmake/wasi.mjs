// Runs a WebAssembly program that was built for WASI: node --no-warnings wasi.mjs PROGRAM [ARGUMENT...]
import { readFile } from "node:fs/promises";
import { WASI } from "node:wasi";

const wasi = new WASI({ version: "preview1", args: process.argv.slice(2), returnOnExit: true });
const program = await WebAssembly.compile(await readFile(process.argv[2]));
const imports = { wasi_snapshot_preview1: wasi.wasiImport };
process.exitCode = wasi.start(await WebAssembly.instantiate(program, imports));
