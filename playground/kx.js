// The library. It is compiled before any tab is opened; `kx` has its functions from then on.
import { create } from "kxmaths5/core";
import { bytes } from "kxmaths5/wasm";

export * from "kxmaths5/core";
export let kx;

export async function loadLibrary() {
  kx = create(await WebAssembly.compile(await bytes()));
}

export const vector = (...numbers) => Float32Array.from(numbers.flat());
export const radians = (degrees) => degrees * Math.PI / 180;
export const degrees = (angle) => angle * 180 / Math.PI;

/** The shortest decimal number that is this single. */
export function single(value) {
  for (let digits = 1; digits < 9; digits++) {
    const text = value.toPrecision(digits);
    if (Math.fround(Number(text)) === Math.fround(value)) return String(Number(text));
  }
  return String(Number(value.toPrecision(9)));
}
