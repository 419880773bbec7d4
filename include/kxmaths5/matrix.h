/**
 * @file
 * Matrices: everyday algebra, elementary transforms, inversion, and matrices applied to points.
 *
 * mrc stands for m[r][c], row r and column c. Matrices act on column vectors at their right, the
 * translation is the last column, and in a product the right factor acts first.
 */
#ifndef KXMATHS5_MATRIX_H
#define KXMATHS5_MATRIX_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Determinants
 */
/** @{ */

/**
 * Determinant of a 4x4 matrix, expanded along row 0. The six minors of rows 2 and 3 are singles:
 *
 *     A = m22*m33 - m23*m32    B = m21*m33 - m23*m31    C = m21*m32 - m22*m31
 *     D = m20*m33 - m23*m30    E = m20*m32 - m22*m30    F = m20*m31 - m21*m30
 *     m00*(m11*A - m12*B + m13*C) - m01*(m10*A - m12*D + m13*E)
 *       + m02*(m10*B - m11*D + m13*F) - m03*(m10*C - m11*E + m12*F)
 *
 * - Null: not allowed.
 * - Degenerate: a singular matrix gives 0 or a value near it; the caller decides. A minor beyond
 *   what a single holds is infinite, or 0: with elements of rows 2 and 3 near 1e20, or near 1e-23.
 *
 * @param[in] m  the matrix
 * @return the determinant, unrounded
 */
KX_API double KXM4Determinant(const KXM4 *m);

/**
 * Determinant of a 3x3 matrix, expanded along row 0. No intermediate is single, unlike the 4x4:
 *
 *     m00*(m11*m22 - m12*m21) - m01*(m10*m22 - m12*m20) + m02*(m10*m21 - m11*m20)
 *
 * - Null: not allowed.
 * - Degenerate: a singular matrix gives 0 or a value near it; the caller decides.
 *
 * @param[in] m  the matrix
 * @return the determinant, unrounded
 */
KX_API double KXM3Determinant(const KXM3 *m);

/** @} */

/** @name Products
 */
/** @{ */

/**
 * Product of two matrices: out = a*b, which applies b to a point first and a after it. To move a
 * thing that has been turned, multiply translation*rotation.
 *
 * out[r][c] is a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c] + a[r][3]*b[3][c].
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
 *
 * @param[in]  a    the left factor, which acts last
 * @param[in]  b    the right factor, which acts first
 * @param[out] out  the product
 */
KX_API void KXM4Mult(const KXM4 *a, const KXM4 *b, KXM4 *out);

/**
 * Product of two 3x3 matrices: out = a*b, which applies b first and a after it.
 *
 * out[r][c] is a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c].
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
 *
 * @param[in]  a    the left factor, which acts last
 * @param[in]  b    the right factor, which acts first
 * @param[out] out  the product
 */
KX_API void KXM3Mult(const KXM3 *a, const KXM3 *b, KXM3 *out);

/**
 * Product of the upper-left 3x3 blocks of two 4x4 matrices, into the block of a third.
 *
 * out[r][c] is a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c] for r and c from 0 to 2. These
 * nine elements are all that is written: row 3 and column 3 of out stay untouched, and those of a
 * and b take no part.
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
 *
 * @param[in]     a    the left factor, which acts last
 * @param[in]     b    the right factor, which acts first
 * @param[in,out] out  the record whose block takes the product
 */
KX_API void KXM43Mult(const KXM4 *a, const KXM4 *b, KXM4 *out);

/** @} */

/** @name Unit matrices and tests
 */
/** @{ */

/**
 * Stores the unit matrix: 1 on the diagonal, 0 elsewhere.
 *
 * - Null: not allowed.
 *
 * @param[out] out  the unit matrix
 */
KX_API void KXM4Unit(KXM4 *out);

/**
 * Stores the 3x3 unit matrix: 1 on the diagonal, 0 elsewhere.
 *
 * - Null: not allowed.
 *
 * @param[out] out  the unit matrix
 */
KX_API void KXM3Unit(KXM3 *out);

/**
 * Tells whether a matrix is the unit matrix, give or take KX_TOLERANCE in each of its elements. A
 * difference equal to KX_TOLERANCE passes.
 *
 * - Null: not allowed.
 *
 * @param[in] m  the matrix
 * @return 1 if it is, 0 if not
 */
KX_API int32_t KXM4IsUnit(const KXM4 *m);

/**
 * Tells whether a 3x3 matrix is the unit matrix, give or take KX_TOLERANCE in each of its elements.
 * A difference equal to KX_TOLERANCE passes.
 *
 * - Null: not allowed.
 *
 * @param[in] m  the matrix
 * @return 1 if it is, 0 if not
 */
KX_API int32_t KXM3IsUnit(const KXM3 *m);

/**
 * Tells whether the first three columns are at right angles to each other. They may have any
 * length, and the matrix may mirror.
 *
 * With L0, L1, L2 the squared lengths of the columns over rows 0 to 2 and d the determinant of the
 * whole matrix as KXM4Determinant returns it, d*d / L0 / L1 / L2 is 1 for columns at right angles.
 * It passes from 0.9990000000025248 to 1.0009999999974752, both included: two columns may be 1.8
 * degrees off. All sixteen elements enter d, so a matrix with m[3][3] = 2 fails.
 *
 * - Null: not allowed.
 * - Degenerate: 0 when a squared length is at or below KX_TOLERANCE, that is, when a column is
 *   shorter than a thousandth or so.
 *
 * @param[in] m  the matrix
 * @return 1 if they are, 0 if not
 */
KX_API int32_t KXM4IsOrthogonal(const KXM4 *m);

/** @} */

/** @name Transpose, sum and copy
 */
/** @{ */

/**
 * Exchanges rows and columns: out[r][c] = in[c][r]. The bits of each float move unchanged.
 *
 * - Aliasing: out may be in.
 * - Null: not allowed.
 *
 * @param[in]  in   the matrix
 * @param[out] out  its transpose
 */
KX_API void KXM4Transpose(const KXM4 *in, KXM4 *out);

/**
 * Exchanges rows and columns of a 3x3 matrix: out[r][c] = in[c][r]. The bits of each float move
 * unchanged.
 *
 * - Aliasing: out may be in.
 * - Null: not allowed.
 *
 * @param[in]  in   the matrix
 * @param[out] out  its transpose
 */
KX_API void KXM3Transpose(const KXM3 *in, KXM3 *out);

/**
 * Sum of two matrices, element by element: out[r][c] = a[r][c] + b[r][c].
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
 *
 * @param[in]  a    the first matrix
 * @param[in]  b    the second matrix
 * @param[out] out  the sum
 */
KX_API void KXM4Add(const KXM4 *a, const KXM4 *b, KXM4 *out);

/**
 * Sum of two 3x3 matrices, element by element: out[r][c] = a[r][c] + b[r][c].
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
 *
 * @param[in]  a    the first matrix
 * @param[in]  b    the second matrix
 * @param[out] out  the sum
 */
KX_API void KXM3Add(const KXM3 *a, const KXM3 *b, KXM3 *out);

/**
 * Copies a matrix bit for bit. The source comes first.
 *
 * - Aliasing: destination may be source; nothing changes then.
 * - Null: not allowed.
 *
 * @param[in]  source       the matrix
 * @param[out] destination  its copy
 */
KX_API void KXM4Copy(const KXM4 *source, KXM4 *destination);

/**
 * Copies a 3x3 matrix bit for bit. The source comes first.
 *
 * - Aliasing: destination may be source; nothing changes then.
 * - Null: not allowed.
 *
 * @param[in]  source       the matrix
 * @param[out] destination  its copy
 */
KX_API void KXM3Copy(const KXM3 *source, KXM3 *destination);

/** @} */

/** @name Elementary transforms
 * Each function fills the whole record: the unit matrix, except for the elements that its contract
 * names. The arguments are stored as they are. Rotations take a cosine and a sine, in this order,
 * not an angle; nothing tests or normalises the pair, and one that is not a cosine and a sine
 * scales as well as turns. A sine of 0 leaves -0 in the element that holds -s. A shear takes the
 * slope itself. There is no degenerate input.
 */
/** @{ */

/**
 * Scale about the origin: m00 = sx, m11 = sy, m22 = sz.
 *
 * - Null: not allowed.
 *
 * @param[in]  sx   the factor for x
 * @param[in]  sy   the factor for y
 * @param[in]  sz   the factor for z
 * @param[out] out  the transform
 */
KX_API void KXM4Scale(float sx, float sy, float sz, KXM4 *out);

/**
 * Translation: m03 = tx, m13 = ty, m23 = tz.
 *
 * - Null: not allowed.
 *
 * @param[in]  tx   the step along X, in the caller's length unit
 * @param[in]  ty   the step along Y
 * @param[in]  tz   the step along Z
 * @param[out] out  the transform
 */
KX_API void KXM4Translate(float tx, float ty, float tz, KXM4 *out);

/**
 * Rotation about X, +Y towards +Z: m11 = c, m12 = -s, m21 = s, m22 = c.
 *
 * - Null: not allowed.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM4RotateX2(float c, float s, KXM4 *out);

/**
 * Rotation about Y, +Z towards +X: m00 = c, m02 = s, m20 = -s, m22 = c.
 *
 * - Null: not allowed.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM4RotateY2(float c, float s, KXM4 *out);

/**
 * Rotation about Z, +X towards +Y: m00 = c, m01 = -s, m10 = s, m11 = c. With c = 0.6 and s = 0.8
 * the first two rows are 0.6 -0.8 0 0 and 0.8 0.6 0 0.
 *
 * - Null: not allowed.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM4RotateZ2(float c, float s, KXM4 *out);

/**
 * Shear of x along y: m01 = k, so that x' = x + k*y.
 *
 * - Null: not allowed.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearXY2(float k, KXM4 *out);

/**
 * Shear of x along z: m02 = k, so that x' = x + k*z.
 *
 * - Null: not allowed.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearXZ2(float k, KXM4 *out);

/**
 * Shear of y along z: m12 = k, so that y' = y + k*z.
 *
 * - Null: not allowed.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearYZ2(float k, KXM4 *out);

/**
 * Scale of the plane about the origin: m00 = sx, m11 = sy.
 *
 * - Null: not allowed.
 *
 * @param[in]  sx   the factor for x
 * @param[in]  sy   the factor for y
 * @param[out] out  the transform
 */
KX_API void KXM3Scale(float sx, float sy, KXM3 *out);

/**
 * Translation of the plane: m02 = tx, m12 = ty.
 *
 * - Null: not allowed.
 *
 * @param[in]  tx   the step along X, in the caller's length unit
 * @param[in]  ty   the step along Y
 * @param[out] out  the transform
 */
KX_API void KXM3Translate(float tx, float ty, KXM3 *out);

/**
 * Rotation of the plane, +X towards +Y: m00 = c, m01 = -s, m10 = s, m11 = c.
 *
 * - Null: not allowed.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM3Rotate2(float c, float s, KXM3 *out);

/** @} */

/** @name Inversion
 * The status is 0 when the inverse was written, 1 when the matrix counts as singular. Test it
 * before the output is used; the condition of the matrix is not told.
 */
/** @{ */

/**
 * Inverse of a 4x4 matrix, by one of two methods, which refuse different matrices.
 *
 * Affine: when |m30|, |m31|, |m32| and |m33 - 1|, the difference as a single, are all below
 * KX_TOLERANCE. The last row is then taken as exactly 0 0 0 1 and plays no further part; that of
 * the inverse is 0 0 0 1. The 3x3 block is inverted by cofactors, and the translation is turned
 * back with the block as stored. With pos the sum of the determinant's terms at or above 0, neg
 * that of those below, and D the single of pos + neg, the block is singular when pos + neg is 0 or
 * |D / (pos - neg)| is below 1e-15. That is relative: blocks of any one scale from about 1e-12 to
 * 1e12 are judged alike. Beyond that D leaves the range of a single, and with it the inverse its
 * sense. Singles are D, the first term m11*m22*m00, and the products m11*m22 and m21*m12 of the
 * first element; so rows that depend on each other exactly may still pass, and give very large
 * elements.
 *
 * General: every other matrix, by an elimination over columns that takes as pivot of a row the
 * first element above KX_TOLERANCE in magnitude, from the diagonal on, and not the largest.
 * Singular is judged by that bound, so the scale does matter. Every element is single after every
 * step, but for the diagonal element that becomes the next pivot.
 *
 * Zeros of the inverse may be negative: the unit matrix's has seven of them.
 *
 * - Aliasing: out must not be m.
 * - Null: not allowed.
 * - Degenerate: a NaN in the last row counts as affine there and has no effect; a NaN in the block
 *   of an affine matrix gives status 1.
 * - On status 1: affine, out stays untouched; general, out is written and means nothing. It is the
 *   unit matrix when row 0 has no element above the bound.
 *
 * @param[in]  m    the matrix
 * @param[out] out  its inverse
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM4Inverse(const KXM4 *m, KXM4 *out);

/**
 * Inverse of a 3x3 matrix, by the cofactors that KXM4Inverse uses for an affine matrix's block, and
 * within the same range of scales. All nine elements count, the last row too.
 *
 * - Aliasing: out may be m.
 * - Null: not allowed.
 * - Degenerate: a NaN in any element gives status 1.
 * - On status 1: out stays untouched.
 *
 * @param[in]  m    the matrix
 * @param[out] out  its inverse
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM3Inverse(const KXM3 *m, KXM3 *out);

/** @} */

/** @name Points
 * A matrix applied to points. I1 takes a point as a position (an implied last coordinate of 1, so
 * that the translation counts), I0 as a direction (an implied 0, so that it does not). An N takes
 * an array. Nothing ever divides by a fourth coordinate, and the forms for KXP2 and KXP3 do not
 * read the last row of the matrix. Each coordinate is one sum of products from left to right.
 *
 * The array forms give each point what the single form gives it. The count stands between the
 * matrix and the arrays; with a count of 0 nothing is read or written. There is no degenerate
 * input.
 */
/** @{ */

/**
 * Turns a direction in the plane: x' = m00*x + m01*y, y' = m10*x + m11*y.
 *
 * - Aliasing: out may be p, and must not be part of m.
 * - Null: not allowed.
 *
 * @param[in]  m    the transform
 * @param[in]  p    the direction
 * @param[out] out  the turned direction
 */
KX_API void KXM3P2I0(const KXM3 *m, const KXP2 *p, KXP2 *out);

/**
 * Moves a position in the plane: x' = m00*x + m01*y + m02, y' = m10*x + m11*y + m12.
 *
 * - Aliasing: out may be p, and must not be part of m.
 * - Null: not allowed.
 *
 * @param[in]  m    the transform
 * @param[in]  p    the position
 * @param[out] out  the moved position
 */
KX_API void KXM3P2I1(const KXM3 *m, const KXP2 *p, KXP2 *out);

/**
 * Turns a direction: x' = m00*x + m01*y + m02*z, and likewise y' and z' from rows 1 and 2.
 *
 * - Aliasing: out may be p, and must not be part of m.
 * - Null: not allowed.
 *
 * @param[in]  m    the transform; column 3 and row 3 are not read
 * @param[in]  p    the direction
 * @param[out] out  the turned direction
 */
KX_API void KXM4P3I0(const KXM4 *m, const KXP3 *p, KXP3 *out);

/**
 * Moves a position: x' = m00*x + m01*y + m02*z + m03, and likewise y' and z' from rows 1 and 2.
 * With m holding 1, 2, 3 ... row by row, (10, 20, 30) goes to (144, 388, 632).
 *
 * - Aliasing: out may be p, and must not be part of m.
 * - Null: not allowed.
 *
 * @param[in]  m    the transform; row 3 is not read
 * @param[in]  p    the position
 * @param[out] out  the moved position
 */
KX_API void KXM4P3I1(const KXM4 *m, const KXP3 *p, KXP3 *out);

/**
 * Applies a matrix to a homogeneous point: x' = m00*x + m01*y + m02*z + m03*w, and likewise y', z'
 * and w' from rows 1, 2 and 3.
 *
 * - Aliasing: out may be p, and must not be part of m.
 * - Null: not allowed.
 *
 * @param[in]  m    the matrix
 * @param[in]  p    the point
 * @param[out] out  the point's image
 */
KX_API void KXM4P4(const KXM4 *m, const KXP4 *p, KXP4 *out);

/**
 * Turns an array of directions in the plane, each as KXM3P2I0 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform
 * @param[in]  count  how many directions
 * @param[in]  in     the directions, count of them, packed: eight bytes each
 * @param[out] out    the turned directions, count of them, packed
 */
KX_API void KXM3NP2I0(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);

/**
 * Moves an array of positions in the plane, each as KXM3P2I1 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform
 * @param[in]  count  how many positions
 * @param[in]  in     the positions, count of them, packed: eight bytes each
 * @param[out] out    the moved positions, count of them, packed
 */
KX_API void KXM3NP2I1(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);

/**
 * Turns an array of directions, each as KXM4P3I0 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; column 3 and row 3 are not read
 * @param[in]  count  how many directions
 * @param[in]  in     the directions, count of them, packed: twelve bytes each
 * @param[out] out    the turned directions, count of them, packed
 */
KX_API void KXM4NP3I0(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);

/**
 * Moves an array of positions, each as KXM4P3I1 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; row 3 is not read
 * @param[in]  count  how many positions
 * @param[in]  in     the positions, count of them, packed: twelve bytes each
 * @param[out] out    the moved positions, count of them, packed
 */
KX_API void KXM4NP3I1(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);

/**
 * Applies a matrix to an array of homogeneous points, each as KXM4P4 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the matrix
 * @param[in]  count  how many points
 * @param[in]  in     the points, count of them, packed: sixteen bytes each
 * @param[out] out    the points' images, count of them, packed
 */
KX_API void KXM4NP4(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out);

/** @} */

KX_END_DECLARATIONS

#endif
