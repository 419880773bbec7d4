// What a host in TypeScript writes; checked by tsc, bundled by esbuild, and run.
import { KX_ORDER_YXZ, KXM4Inverse, KXM4NP3I1, KXM4Position, KXPointsToREA, record } from "kxmaths5";

const place = record("KXPosition", { x: 10, y: 2, rotateY: 1.5707964 });
const { matrix, inverse } = KXM4Position(place, KX_ORDER_YXZ);
if (!matrix || !inverse) throw new Error("both were wanted");
const back: Float32Array | null = KXM4Inverse(matrix);
const world: Float32Array = KXM4NP3I1(matrix, new Float32Array([0, 0, 0.5]));
const { range } = KXPointsToREA(new Float32Array(3), world);
console.log([...world].join(" "), back?.every((each, i) => each === inverse[i]), range.toFixed(3));
