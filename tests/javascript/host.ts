// What a host in TypeScript writes; checked by tsc, bundled by esbuild, and run.
import * as kx from "kxmaths5";
import { KX_ORDER_YXZ, KXM4Inverse, KXM4NP3I1, KXM4Position, KXPointsToREA, record } from "kxmaths5";
import { create } from "kxmaths5/core";
import { bytes } from "kxmaths5/wasm";

// What functions of each kind return; another type is refused here, whether it is wider or narrower.
type Same<A, B> = [A, B] extends [B, A] ? true : false;
type Kinds = [
  Same<ReturnType<typeof kx.KXIsValidBox>, boolean>,
  Same<ReturnType<typeof kx.KXPutPointInBox>, boolean>,
  Same<ReturnType<typeof kx.KXBitCount>, number>,
  Same<ReturnType<typeof kx.KXV3Normalise>, { result: number; out: Float32Array }>,
  Same<ReturnType<typeof KXM4Inverse>, Float32Array | null>,
  Same<ReturnType<typeof kx.KXLineIxBox>, Float32Array | boolean | null>,
  Same<ReturnType<typeof kx.look_at>, { placement: Float32Array | null; view: Float32Array | null }>,
  Same<ReturnType<typeof kx.triangle>, Uint32Array | null>,
  Same<ReturnType<typeof KXM4NP3I1>, Float32Array>,
  Same<ReturnType<typeof kx.createWorkspace>["array"], Float32Array>,
  Same<Parameters<typeof kx.createWorkspace>, [number]>,
  Same<Parameters<typeof kx.KXChangeUnits>, [number, number, number]>,
  Same<Parameters<typeof record>, [string, Record<string, number>]>,
  Same<Parameters<typeof create>, [Awaited<ReturnType<typeof WebAssembly.compile>>]>,
  Same<ReturnType<typeof bytes>, Promise<Uint8Array>>,
];
const kinds: Kinds extends true[] ? true : never = true;
if (!kinds) throw new Error("types are not what they are");

const place = record("KXPosition", { x: 10, y: 2, rotateY: 1.5707964 });
const { matrix, inverse } = KXM4Position(place, KX_ORDER_YXZ);
if (!matrix || !inverse) throw new Error("both were wanted");
const back: Float32Array | null = KXM4Inverse(matrix);
const world: Float32Array = KXM4NP3I1(matrix, new Float32Array([0, 0, 0.5]));
const { range } = KXPointsToREA(new Float32Array(3), world);
console.log([...world].join(" "), back?.every((each, i) => each === inverse[i]), range.toFixed(3));
