/**
 * @file
 * Matrices: algebra, elementary transforms, inversion, and matrices applied to points.
 *
 * mrc is short for m[r][c], row r and column c. Vectors are columns, to the right of the matrix.
 * The translation is the last column. In a product the right factor acts first.
 */
#ifndef KXMATHS5_MATRIX_H
#define KXMATHS5_MATRIX_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Determinants
 */
/** @{ */

/**
 * Determinant of a 4x4 matrix, expanded along row 0 with the minors of rows 2 and 3:
 *
 *     A = m22*m33 - m23*m32    B = m21*m33 - m23*m31    C = m21*m32 - m22*m31
 *     D = m20*m33 - m23*m30    E = m20*m32 - m22*m30    F = m20*m31 - m21*m30
 *     m00*(m11*A - m12*B + m13*C) - m01*(m10*A - m12*D + m13*E)
 *       + m02*(m10*B - m11*D + m13*F) - m03*(m10*C - m11*E + m12*F)
 *
 * - Degenerate: a singular matrix gives 0 or a value near 0. The minors overflow with elements of
 *   rows 2 and 3 near 1e20, and underflow to 0 with elements near 1e-23.
 * - Rounding: the six minors are singles.
 *
 * @param[in] m  the matrix
 * @return the determinant, unrounded
 */
KX_API double KXM4Determinant(const KXM4 *m);

/**
 * Determinant of a 3x3 matrix, expanded along row 0:
 *
 *     m00*(m11*m22 - m12*m21) - m01*(m10*m22 - m12*m20) + m02*(m10*m21 - m11*m20)
 *
 * - Degenerate: a singular matrix gives 0 or a value near 0.
 * - Rounding: no intermediate is single, unlike in KXM4Determinant.
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
 * Product of two matrices: out = a*b, which applies b to a point first, then a. To turn an object
 * and then move it, multiply translation*rotation.
 *
 *     out[r][c] = a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c] + a[r][3]*b[3][c]
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]  a    the left factor, which acts last
 * @param[in]  b    the right factor, which acts first
 * @param[out] out  the product
 */
KX_API void KXM4Mult(const KXM4 *a, const KXM4 *b, KXM4 *out);

/**
 * Product of two 3x3 matrices: out = a*b, which applies b to a point first, then a.
 *
 *     out[r][c] = a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c]
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]  a    the left factor, which acts last
 * @param[in]  b    the right factor, which acts first
 * @param[out] out  the product
 */
KX_API void KXM3Mult(const KXM3 *a, const KXM3 *b, KXM3 *out);

/**
 * Product of the upper-left 3x3 blocks of two 4x4 matrices, stored in the block of a third. Row 3
 * and column 3 of a and b are not read; those of out stay untouched.
 *
 *     out[r][c] = a[r][0]*b[0][c] + a[r][1]*b[1][c] + a[r][2]*b[2][c]     r, c = 0, 1, 2
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]     a    the left factor, which acts last
 * @param[in]     b    the right factor, which acts first
 * @param[in,out] out  the matrix whose block is written
 */
KX_API void KXM43Mult(const KXM4 *a, const KXM4 *b, KXM4 *out);

/** @} */

/** @name Identity and tests
 */
/** @{ */

/**
 * Stores the identity: 1 on the diagonal, 0 elsewhere.
 *
 * @param[out] out  the identity
 */
KX_API void KXM4Unit(KXM4 *out);

/**
 * Stores the 3x3 identity: 1 on the diagonal, 0 elsewhere.
 *
 * @param[out] out  the identity
 */
KX_API void KXM3Unit(KXM3 *out);

/**
 * Whether a matrix is the identity: each element is off by no more than KX_TOLERANCE.
 *
 * @param[in] m  the matrix
 * @return 1 if it is, 0 if not
 */
KX_API int32_t KXM4IsUnit(const KXM4 *m);

/**
 * Whether a 3x3 matrix is the identity: each element is off by no more than KX_TOLERANCE.
 *
 * @param[in] m  the matrix
 * @return 1 if it is, 0 if not
 */
KX_API int32_t KXM3IsUnit(const KXM3 *m);

/**
 * Whether the first three columns are perpendicular to each other, of any length, mirrored or not.
 *
 * L0, L1 and L2 are the squared lengths of the columns over rows 0 to 2, and d is the result of
 * KXM4Determinant. The matrix passes when d*d / L0 / L1 / L2, which is 1 for perpendicular columns,
 * is from 0.9990000000025248 to 1.0009999999974752: two columns may be off by 1.8 degrees. All
 * sixteen elements count in d, so a matrix with m[3][3] = 2 fails.
 *
 * - Degenerate: 0 when a squared length is at or below KX_TOLERANCE, so when a column is shorter
 *   than about 0.001.
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
 * Transpose: out[r][c] = in[c][r]. The bits of each float stay the same.
 *
 * - Aliasing: out may be in.
 *
 * @param[in]  in   the matrix
 * @param[out] out  its transpose
 */
KX_API void KXM4Transpose(const KXM4 *in, KXM4 *out);

/**
 * Transpose of a 3x3 matrix: out[r][c] = in[c][r]. The bits of each float stay the same.
 *
 * - Aliasing: out may be in.
 *
 * @param[in]  in   the matrix
 * @param[out] out  its transpose
 */
KX_API void KXM3Transpose(const KXM3 *in, KXM3 *out);

/**
 * Sum of two matrices, element by element: out[r][c] = a[r][c] + b[r][c].
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
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
 *
 * @param[in]  a    the first matrix
 * @param[in]  b    the second matrix
 * @param[out] out  the sum
 */
KX_API void KXM3Add(const KXM3 *a, const KXM3 *b, KXM3 *out);

/**
 * Copies a matrix bit for bit. The source comes first.
 *
 * - Aliasing: destination may be source.
 *
 * @param[in]  source       the matrix
 * @param[out] destination  its copy
 */
KX_API void KXM4Copy(const KXM4 *source, KXM4 *destination);

/**
 * Copies a 3x3 matrix bit for bit. The source comes first.
 *
 * - Aliasing: destination may be source.
 *
 * @param[in]  source       the matrix
 * @param[out] destination  its copy
 */
KX_API void KXM3Copy(const KXM3 *source, KXM3 *destination);

/** @} */

/** @name Elementary transforms
 * Each function fills the whole record: the identity, except for the elements that its contract
 * names. The arguments are stored as they are. A rotation takes a cosine and a sine, in this order,
 * not an angle; a pair that is not a cosine and a sine scales as well as rotates. A sine of 0
 * stores -0 in the element that holds -s. A shear takes the slope, not an angle.
 */
/** @{ */

/**
 * Scale about the origin: m00 = sx, m11 = sy, m22 = sz.
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
 * @param[in]  tx   the step along X, in the caller's length unit
 * @param[in]  ty   the step along Y
 * @param[in]  tz   the step along Z
 * @param[out] out  the transform
 */
KX_API void KXM4Translate(float tx, float ty, float tz, KXM4 *out);

/**
 * Rotation about X, +Y towards +Z: m11 = c, m12 = -s, m21 = s, m22 = c.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM4RotateX2(float c, float s, KXM4 *out);

/**
 * Rotation about Y, +Z towards +X: m00 = c, m02 = s, m20 = -s, m22 = c.
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
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM4RotateZ2(float c, float s, KXM4 *out);

/**
 * Shear of x along y: m01 = k, so that x' = x + k*y.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearXY2(float k, KXM4 *out);

/**
 * Shear of x along z: m02 = k, so that x' = x + k*z.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearXZ2(float k, KXM4 *out);

/**
 * Shear of y along z: m12 = k, so that y' = y + k*z.
 *
 * @param[in]  k    the slope
 * @param[out] out  the transform
 */
KX_API void KXM4ShearYZ2(float k, KXM4 *out);

/**
 * Scale of the plane about the origin: m00 = sx, m11 = sy.
 *
 * @param[in]  sx   the factor for x
 * @param[in]  sy   the factor for y
 * @param[out] out  the transform
 */
KX_API void KXM3Scale(float sx, float sy, KXM3 *out);

/**
 * Translation of the plane: m02 = tx, m12 = ty.
 *
 * @param[in]  tx   the step along X, in the caller's length unit
 * @param[in]  ty   the step along Y
 * @param[out] out  the transform
 */
KX_API void KXM3Translate(float tx, float ty, KXM3 *out);

/**
 * Rotation of the plane, +X towards +Y: m00 = c, m01 = -s, m10 = s, m11 = c.
 *
 * @param[in]  c    the cosine of the angle
 * @param[in]  s    the sine of the angle
 * @param[out] out  the transform
 */
KX_API void KXM3Rotate2(float c, float s, KXM3 *out);

/** @} */

/** @name Inversion
 * Status 0: the inverse was written. Status 1: the matrix counts as singular. Test the status
 * before using the output. The condition number is not reported.
 */
/** @{ */

/**
 * Inverse of a 4x4 matrix. It has two methods; the last row decides which.
 *
 *                    affine                           general
 *     used when      |m30|, |m31|, |m32| and          otherwise
 *                    |m33 - 1| below KX_TOLERANCE
 *     method         cofactors of the 3x3 block;      Gauss-Jordan elimination over columns;
 *                    translation -(inverse block)*t   pivot: the row's first element from the
 *                                                     diagonal on with a magnitude above
 *                                                     KX_TOLERANCE, not the largest
 *     last row       taken and stored as 0 0 0 1      inverted with the rest
 *     singular when  D is 0, or |D / S| is below      a row has no pivot, so the scale matters
 *                    1e-15
 *     on status 1    out untouched                    out meaningless; the identity if row 0
 *                                                     has no pivot
 *
 * D is the determinant of the block, the sum of six products, and S the sum of their magnitudes.
 * The affine test is relative: blocks of any one scale from 1e-12 to 1e12 are treated alike, blocks
 * near singular in a narrower range, as long as D is a normal single, from about 1e-38 to 3e38. A
 * smaller D loses bits, or gives status 1; a larger one gives a block of zeros, with status 0.
 * Linearly dependent rows are refused if they are small integers. Others mostly pass and give very
 * large elements: of a million random blocks with one row twice another 999,994 passed.
 *
 * The general method can lose all digits and still return 0, since its pivots may be small. Of a
 * million camera matrices, perspective*view, 0.18 % came out wrong by more than 1e-3 of the largest
 * element. Invert the factors instead: KXM4Position gives a view and its inverse, and
 * (inverse of view)*(inverse of perspective) was right within 2e-7.
 *
 * Zeros of the inverse may be negative: the identity's has seven.
 *
 * - Aliasing: out must not be m.
 * - Degenerate: a NaN in the last row does not select the general method; where the affine one is
 *   used it has no effect. A NaN in the block of an affine matrix gives status 1.
 * - On status 1: see the table.
 * - Rounding: m33 - 1 is a single in the test. Affine: singles are D, its first product
 *   m11*m22*m00, in element 00 the products m11*m22 and m21*m12, and the inverse block where it
 *   multiplies t. General: each element is a single after each step, except for the diagonal
 *   element that is the next pivot.
 *
 * @param[in]  m    the matrix
 * @param[out] out  its inverse
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM4Inverse(const KXM4 *m, KXM4 *out);

/**
 * Inverse of a 3x3 matrix, by the affine method of KXM4Inverse for a 3x3 block, with the same range
 * of scales. All nine elements count, so the last row need not be 0 0 1.
 *
 * - Aliasing: out may be m.
 * - Degenerate: a NaN gives status 1.
 * - On status 1: out stays untouched.
 * - Rounding: as in KXM4Inverse.
 *
 * @param[in]  m    the matrix
 * @param[out] out  its inverse
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM3Inverse(const KXM3 *m, KXM3 *out);

/** @} */

/** @name Points
 * A matrix applied to points. I1 takes a point as a position: its last coordinate is 1, and the
 * translation counts. I0 takes it as a direction: its last coordinate is 0, and the translation
 * does not. N takes an array. Nothing is divided by a fourth coordinate; for KXP2 and KXP3 the last
 * row of the matrix is not read.
 *
 * An array form gives each point the same bits as the single form. Its count is between the matrix
 * and the arrays; with a count of 0 nothing is read or written.
 */
/** @{ */

/**
 * Transforms a direction in the plane: x' = m00*x + m01*y, y' = m10*x + m11*y.
 *
 * - Aliasing: out may be p, and must not be part of m.
 *
 * @param[in]  m    the transform; column 2 and row 2 are not read
 * @param[in]  p    the direction
 * @param[out] out  the transformed direction
 */
KX_API void KXM3P2I0(const KXM3 *m, const KXP2 *p, KXP2 *out);

/**
 * Transforms a position in the plane: x' = m00*x + m01*y + m02, y' = m10*x + m11*y + m12.
 *
 * - Aliasing: out may be p, and must not be part of m.
 *
 * @param[in]  m    the transform; row 2 is not read
 * @param[in]  p    the position
 * @param[out] out  the transformed position
 */
KX_API void KXM3P2I1(const KXM3 *m, const KXP2 *p, KXP2 *out);

/**
 * Transforms a direction: x' = m00*x + m01*y + m02*z, and likewise y' and z' from rows 1 and 2. Its
 * length is transformed too. For a surface normal under uneven scales use the transposed inverse.
 *
 * - Aliasing: out may be p, and must not be part of m.
 *
 * @param[in]  m    the transform; column 3 and row 3 are not read
 * @param[in]  p    the direction
 * @param[out] out  the transformed direction
 */
KX_API void KXM4P3I0(const KXM4 *m, const KXP3 *p, KXP3 *out);

/**
 * Transforms a position: x' = m00*x + m01*y + m02*z + m03, and likewise y' and z'. With m
 * holding 1, 2, 3 ... row by row, (10, 20, 30) goes to (144, 388, 632).
 *
 * - Aliasing: out may be p, and must not be part of m.
 *
 * @param[in]  m    the transform; row 3 is not read
 * @param[in]  p    the position
 * @param[out] out  the transformed position
 */
KX_API void KXM4P3I1(const KXM4 *m, const KXP3 *p, KXP3 *out);

/**
 * Transforms a homogeneous point: x' = m00*x + m01*y + m02*z + m03*w, and likewise y', z'
 * and w' from rows 1, 2 and 3.
 *
 * - Aliasing: out may be p, and must not be part of m.
 *
 * @param[in]  m    the matrix
 * @param[in]  p    the point
 * @param[out] out  the transformed point
 */
KX_API void KXM4P4(const KXM4 *m, const KXP4 *p, KXP4 *out);

/**
 * Transforms an array of directions in the plane, each as KXM3P2I0 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; column 2 and row 2 are not read
 * @param[in]  count  how many directions
 * @param[in]  in     the directions, count of them, packed: eight bytes each
 * @param[out] out    the transformed directions, count of them, packed
 */
KX_API void KXM3NP2I0(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);

/**
 * Transforms an array of positions in the plane, each as KXM3P2I1 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; row 2 is not read
 * @param[in]  count  how many positions
 * @param[in]  in     the positions, count of them, packed: eight bytes each
 * @param[out] out    the transformed positions, count of them, packed
 */
KX_API void KXM3NP2I1(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);

/**
 * Transforms an array of directions, each as KXM4P3I0 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; column 3 and row 3 are not read
 * @param[in]  count  how many directions
 * @param[in]  in     the directions, count of them, packed: twelve bytes each
 * @param[out] out    the transformed directions, count of them, packed
 */
KX_API void KXM4NP3I0(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);

/**
 * Transforms an array of positions, each as KXM4P3I1 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the transform; row 3 is not read
 * @param[in]  count  how many positions
 * @param[in]  in     the positions, count of them, packed: twelve bytes each
 * @param[out] out    the transformed positions, count of them, packed
 */
KX_API void KXM4NP3I1(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);

/**
 * Transforms an array of homogeneous points, each as KXM4P4 does.
 *
 * - Aliasing: out may be in; the arrays must not overlap otherwise, and out must not touch m.
 * - Null: allowed when count is 0.
 *
 * @param[in]  m      the matrix
 * @param[in]  count  how many points
 * @param[in]  in     the points, count of them, packed: sixteen bytes each
 * @param[out] out    the transformed points, count of them, packed
 */
KX_API void KXM4NP4(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out);

/** @} */

KX_END_DECLARATIONS

#endif
