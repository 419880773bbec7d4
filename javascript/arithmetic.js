// What takes longer to be copied into the library's memory than to be computed: the formulas of the contracts once
// more, in doubles as there, and rounded where they are stored. An output may be an input.
import { check } from "./heap.js";

const single = Math.fround;
const tolerance = single(1e-6);

export function KXM4Mult(a, b, out = new Float32Array(16)) {
  check(a, 16, "KXM4Mult: a");
  check(b, 16, "KXM4Mult: b");
  check(out, 16, "KXM4Mult: out");
  const b00 = b[0], b01 = b[1], b02 = b[2], b03 = b[3];
  const b10 = b[4], b11 = b[5], b12 = b[6], b13 = b[7];
  const b20 = b[8], b21 = b[9], b22 = b[10], b23 = b[11];
  const b30 = b[12], b31 = b[13], b32 = b[14], b33 = b[15];
  const x0 = a[0], y0 = a[1], z0 = a[2], w0 = a[3];
  out[0] = x0 * b00 + y0 * b10 + z0 * b20 + w0 * b30;
  out[1] = x0 * b01 + y0 * b11 + z0 * b21 + w0 * b31;
  out[2] = x0 * b02 + y0 * b12 + z0 * b22 + w0 * b32;
  out[3] = x0 * b03 + y0 * b13 + z0 * b23 + w0 * b33;
  const x1 = a[4], y1 = a[5], z1 = a[6], w1 = a[7];
  out[4] = x1 * b00 + y1 * b10 + z1 * b20 + w1 * b30;
  out[5] = x1 * b01 + y1 * b11 + z1 * b21 + w1 * b31;
  out[6] = x1 * b02 + y1 * b12 + z1 * b22 + w1 * b32;
  out[7] = x1 * b03 + y1 * b13 + z1 * b23 + w1 * b33;
  const x2 = a[8], y2 = a[9], z2 = a[10], w2 = a[11];
  out[8] = x2 * b00 + y2 * b10 + z2 * b20 + w2 * b30;
  out[9] = x2 * b01 + y2 * b11 + z2 * b21 + w2 * b31;
  out[10] = x2 * b02 + y2 * b12 + z2 * b22 + w2 * b32;
  out[11] = x2 * b03 + y2 * b13 + z2 * b23 + w2 * b33;
  const x3 = a[12], y3 = a[13], z3 = a[14], w3 = a[15];
  out[12] = x3 * b00 + y3 * b10 + z3 * b20 + w3 * b30;
  out[13] = x3 * b01 + y3 * b11 + z3 * b21 + w3 * b31;
  out[14] = x3 * b02 + y3 * b12 + z3 * b22 + w3 * b32;
  out[15] = x3 * b03 + y3 * b13 + z3 * b23 + w3 * b33;
  return out;
}

/**
 * The inverse of an affine matrix by cofactors; null for a singular one. It is undefined where the library has to
 * look: at matrices with perspective, infinities or NaNs.
 */
export function invertAffine(m, out) {
  check(m, 16, "KXM4Inverse: m");
  check(out, 16, "KXM4Inverse: out");
  if (Math.abs(m[12]) >= tolerance || Math.abs(m[13]) >= tolerance || Math.abs(m[14]) >= tolerance ||
    Math.abs(single(m[15] - 1)) >= tolerance) return undefined;
  const m00 = m[0], m01 = m[1], m02 = m[2], x = m[3];
  const m10 = m[4], m11 = m[5], m12 = m[6], y = m[7];
  const m20 = m[8], m21 = m[9], m22 = m[10], z = m[11];
  // The terms of the determinant, of which the first is single, in two sums: of those above 0 and of those below.
  // Each is taken twice, since that needs no branch, and costs no bit.
  const t0 = single(m11 * m22 * m00), t1 = m10 * m21 * m02, t2 = m20 * m12 * m01;
  const t3 = -(m11 * m20 * m02), t4 = -(m10 * m22 * m01), t5 = -(m21 * m12 * m00);
  const s0 = Math.abs(t0), s1 = Math.abs(t1), s2 = Math.abs(t2), s3 = Math.abs(t3), s4 = Math.abs(t4), s5 = Math.abs(t5);
  const above = 0.5 * (t0 + s0 + (t1 + s1) + (t2 + s2) + (t3 + s3) + (t4 + s4) + (t5 + s5));
  const below = 0.5 * (t0 - s0 + (t1 - s1) + (t2 - s2) + (t3 - s3) + (t4 - s4) + (t5 - s5));
  const determinant = above + below;
  if (determinant !== determinant) return undefined;
  if (determinant === 0) return null;
  const D = single(determinant);
  if (Math.abs(D / (above - below)) < 1e-15) return null;
  const k = 1 / D;
  const i00 = single((single(m11 * m22) - single(m21 * m12)) * k);
  const i01 = single((m01 * m22 - m21 * m02) * -k);
  const i02 = single((m01 * m12 - m11 * m02) * k);
  const i10 = single((m10 * m22 - m20 * m12) * -k);
  const i11 = single((m00 * m22 - m20 * m02) * k);
  const i12 = single((m00 * m12 - m10 * m02) * -k);
  const i20 = single((m10 * m21 - m11 * m20) * k);
  const i21 = single((m21 * m00 - m20 * m01) * -k);
  const i22 = single((m11 * m00 - m10 * m01) * k);
  out[0] = i00; out[1] = i01; out[2] = i02; out[3] = -(i00 * x + i01 * y + i02 * z);
  out[4] = i10; out[5] = i11; out[6] = i12; out[7] = -(i10 * x + i11 * y + i12 * z);
  out[8] = i20; out[9] = i21; out[10] = i22; out[11] = -(i20 * x + i21 * y + i22 * z);
  out[12] = 0; out[13] = 0; out[14] = 0; out[15] = 1;
  return out;
}
