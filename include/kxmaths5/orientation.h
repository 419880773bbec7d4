/**
 * @file
 * From Euler angles and positions to matrices and back, quaternions, and a viewing matrix.
 *
 * A transform can be taken apart in two ways, which are not interchangeable. With T a translation,
 * S = diag(s0, s1, s2) a scale, and RX, RY, RZ the rotations:
 *
 *                             KXM4Decompose              KXM4MatrixComponents
 *     takes the matrix as     T*S*RX*RY*RZ               T*RY*RX*RZ*S
 *     scales are lengths of   rows of the block          columns of the block
 *     a point is              rotated, then scaled       scaled along its own axes,
 *                             along the fixed axes       then rotated
 *     shear, perspective      separated                  not separated
 *     m[3][3]                 divided out                not divided out
 *     rebuilt by              KXM4Compose                KXM4Position with KX_ORDER_YXZ, times
 *                                                        KXM4Scale on its right
 *
 * One matrix taken apart both ways, a quarter turn about Z with a scale of 2:
 *
 *     0 -2 0 0    KXM4Decompose:         scale 2 1 1, rotateZ pi/2
 *     1  0 0 0    KXM4MatrixComponents:  scale 1 2 1, rotateZ pi/2
 *     0  0 1 0
 *     0  0 0 1
 *
 * And a rotation alone, built from the angles 0.3, 0.4, 0.5 with KX_ORDER_XYZ:
 *
 *     KXM4Decompose:         rotate 0.3     0.4     0.5
 *     KXM4MatrixComponents:  rotate 0.27567 0.41665 0.61988
 */
#ifndef KXMATHS5_ORIENTATION_H
#define KXMATHS5_ORIENTATION_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Orientation and position
 * With c and s the cosine and sine of the angle about each axis, the elementary rotations are
 *
 *     RX: 1 0  0    RY:  c 0 s    RZ: c -s 0
 *         0 c -s         0 1 0        s  c 0
 *         0 s  c        -s 0 c        0  0 1
 *
 * and an order names their product from left to right; the rightmost acts first. The inverse is the
 * product of the opposite rotations in reverse order. It is rounded on its own, so it is not always
 * the transpose to the last bit:
 *
 *     order           matrix                  inverse
 *     KX_ORDER_XYZ    RX(x)*(RY(y)*RZ(z))     RZ(-z)*(RY(-y)*RX(-x))
 *     KX_ORDER_XZY    RX(x)*(RZ(z)*RY(y))     RY(-y)*(RZ(-z)*RX(-x))
 *     KX_ORDER_YXZ    RY(y)*(RX(x)*RZ(z))     RZ(-z)*(RX(-x)*RY(-y))
 *     KX_ORDER_YZX    RY(y)*(RZ(z)*RX(x))     RX(-x)*(RZ(-z)*RY(-y))
 *     KX_ORDER_ZXY    RZ(z)*(RX(x)*RY(y))     RY(-y)*(RX(-x)*RZ(-z))
 *     KX_ORDER_ZYX    RZ(z)*(RY(y)*RX(x))     RX(-x)*(RY(-y)*RZ(-z))
 *
 * A cosine or sine below 1e-07 in magnitude becomes +0, so that a quarter turn gives exact zeros.
 */
/** @{ */

/**
 * Rotation from three angles, and its inverse. The outputs come first.
 *
 * - Aliasing: matrix and inverse may be one record, which ends as the inverse.
 * - Null: matrix, inverse or both may be null; a null output is skipped.
 * - Degenerate: an infinite or NaN angle counts as cosine 0 and sine 0; the outputs are finite, but
 *   no rotations. With an order outside 0 to 5 the fourth row and column of each output become 0 0
 *   0 1, and the 3x3 block stays untouched.
 * - Rounding: the six cosines and sines are singles, compared with the double 1e-07. The elements
 *   of the product in parentheses are singles.
 *
 * @param[out] matrix   the rotation, with no translation; or null
 * @param[out] inverse  its inverse; or null
 * @param[in]  x        the angle about X, in radians
 * @param[in]  y        the angle about Y, in radians
 * @param[in]  z        the angle about Z, in radians
 * @param[in]  order    the order of the factors, one of KX_ORDER_
 */
KX_API void KXM4Orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z,
                            KXRotationOrder order);

/**
 * Matrix of a position and orientation, and its inverse. The outputs come first.
 *
 * The matrix takes a point p to R*p + t, with R as in KXM4Orientation: it rotates first, then
 * moves. The inverse takes p back to R'*p - R'*t, with R' the inverse rotation. For a camera that
 * is placed by the matrix, the inverse is the view.
 *
 * - Aliasing: matrix and inverse may be one record, which ends as the inverse. Neither may touch
 *   position.
 * - Null: matrix, inverse or both may be null; a null output is skipped. position must not be null.
 * - Degenerate: angles and orders as in KXM4Orientation. With an order outside 0 to 5 the inverse's
 *   translation uses the block that its record held.
 * - Rounding: R'*t is rounded to singles, then negated, so a zero translation mostly gives -0.
 *
 * @param[out] matrix    the placement: from the object's own coordinates to the scene's; or null
 * @param[out] inverse   the inverse of it; or null
 * @param[in]  position  translation in the caller's length unit, angles in radians
 * @param[in]  order     the order of the factors, one of KX_ORDER_
 */
KX_API void KXM4Position(KXM4 *matrix, KXM4 *inverse, const KXPosition *position,
                         KXRotationOrder order);

/** @} */

/** @name Decomposition
 * A transform taken apart by rows into T*S*H*(RX*RY*RZ), and built from T, S and the angles. T is
 * the translation, S = diag(scaleX, scaleY, scaleZ), and H the shear
 *
 *     1        0        0
 *     shearXY  1        0
 *     shearXZ  shearYZ  1
 *
 * S is on the left of the rotation: a point is rotated first, then scaled along the fixed axes.
 * KXM4Compose reads neither the shear nor the perspective, so a matrix that has either does not
 * come back. The start of this file compares this with KXM4MatrixComponents.
 */
/** @{ */

/**
 * Takes a transform apart into scale, shear, rotation, translation and perspective.
 *
 * All sixteen elements are multiplied by 1/m33 first, if |m33| is at or above KX_TOLERANCE. Then
 * Gram-Schmidt, with V0, V1, V2 the rows of the 3x3 block and each V/|V| as by KXV3Normalise:
 *
 *     scaleX  = |V0|   V0 = V0/|V0|
 *     shearXY = V0.V1  V1 = V1 - shearXY*V0
 *     scaleY  = |V1|   V1 = V1/|V1|   shearXY = shearXY/|V1|
 *     shearXZ = V0.V2  V2 = V2 - shearXZ*V0
 *     shearYZ = V1.V2  V2 = V2 - shearYZ*V1
 *     scaleZ  = |V2|   V2 = V2/|V2|   shearXZ = shearXZ/|V2|   shearYZ = shearYZ/|V2|
 *
 * A mirror has V0.(V1 x V2) below 0; all three scales and all three rows then change sign. So any
 * mirror comes back as three negative scales, unless the products underflow, with rows shorter than
 * about 1e-22. The angles are those of RX*RY*RZ, whose rows these now are:
 *
 *     rotateY = y = asin(V0.z)
 *     |cos y| at or above KX_TOLERANCE:  rotateX = atan2(-V1.z, V2.z)  rotateZ = atan2(-V0.y, V0.x)
 *     gimbal lock, y = pi/2 or -pi/2:    rotateX = atan2(V1.x, V1.y), at -pi/2 atan2(-V1.x, V1.y),
 *                                        rotateZ = 0
 *
 * KXM4Compose rebuilds a matrix without shear and perspective from these. Near a quarter turn about
 * Y a rotation comes back less exactly: to 2.5e-4 within 0.00025 radians of it, where V0.z rounds
 * to 1 or -1, and to 3e-5 from 0.001 radians on.
 *
 * The translation is m03, m13, m23. The perspective is 0 0 0 1 when |m30|, |m31| and |m32| are all
 * below KX_TOLERANCE. Otherwise it is Q*(m30, m31, m32, m33), as KXM4P4 applies Q, the inverse by
 * KXM4Inverse of A, the matrix with the last row 0 0 0 1; Q itself, not its transpose. So it is not
 * the last row of a matrix: KXM4P4 with A takes it back to m30, m31, m32, m33.
 *
 * - Aliasing: components may be the same sixteen floats as m.
 * - Degenerate: the matrix is singular only if the determinant of A is exactly 0 or, where there is
 *   perspective, if KXM4Inverse refuses A. A row of length at or below KX_TOLERANCE is not made
 *   unit, and rotateY is then the arcsine of its short element. A nearly singular block passes;
 *   Gram-Schmidt may leave a row of zeros, with a scale of 0 and shears that are infinite or NaN.
 * - On status 1: components stays untouched.
 * - Rounding: singles are the elements, the dot products, the rows at every step and V1 x V2. The
 *   lengths that divide the shears are not rounded.
 *
 * @param[in]  m           the transform
 * @param[out] components  its parts; angles in radians, rotateY from -pi/2 to pi/2
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM4Decompose(const KXM4 *m, KXComponents *components);

/**
 * Builds a transform from its parts: T*(S*((RX*RY)*RZ)). The output comes first.
 *
 * Row i of the block is scale i times row i of the rotation. The last column is the translation,
 * the last row 0 0 0 1. Shear and perspective are not read. Small sines and cosines stay as they
 * are: a quarter turn leaves about -4.4e-08 where KXM4Orientation has an exact 0.
 *
 * - Aliasing: out may be the same sixteen floats as components.
 * - Rounding: singles are the sines and cosines, and the elements of each product.
 *
 * @param[out] out         the transform
 * @param[in]  components  its parts, angles in radians
 */
KX_API void KXM4Compose(KXM4 *out, const KXComponents *components);

/**
 * Takes a transform of the plane apart, as KXM4Decompose takes the same transform of space.
 *
 * The results are scaleX, scaleY, shearXY, rotateZ, translateX and translateY; the last row of m is
 * not read. A mirror has three negative scales and a rotateX of pi, as in space. KXM3Compose does
 * not read these, so a mirror does not come back.
 *
 * - Aliasing: components must be apart from m.
 * - Degenerate: the matrix is singular only if the determinant is exactly 0.
 * - On status 1: components stays untouched.
 * - Rounding: as in KXM4Decompose.
 *
 * @param[in]  m           the transform of the plane
 * @param[out] components  its parts, all sixteen written
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM3Decompose(const KXM3 *m, KXComponents *components);

/**
 * Builds a transform of the plane from scaleX, scaleY, rotateZ, translateX and translateY, as
 * KXM4Compose does in space. Nothing else is read. The output comes first; its last row is 0 0 1.
 *
 * - Aliasing: out must be apart from components.
 *
 * @param[out] out         the transform of the plane
 * @param[in]  components  its parts, the angle in radians
 */
KX_API void KXM3Compose(KXM3 *out, const KXComponents *components);

/** @} */

/** @name Components
 * Position, angles and scale of a transform by its columns, taken as T*RY*RX*RZ*diag(s0, s1, s2).
 * They undo KXM4Position with KX_ORDER_YXZ, and with no other order. The scale is on the right of
 * the rotation: a point is scaled along its own axes first. The start of this file compares this
 * with KXM4Decompose.
 *
 * A matrix counts as mirrored when the determinant of all of it, last row included, is below
 * -KX_TOLERANCE. So a mirror whose scales multiply to 1e-6 or less, such as 0.01 on each axis, goes
 * undetected. Only the first scale takes the sign.
 */
/** @{ */

/**
 * Translation, Euler angles in the order YXZ, and scale of a transform of space.
 *
 * Each scale is the length of a column of the 3x3 block, which is then made unit as by
 * KXV3Normalise; the first scale is negated when mirrored. From the unit columns, with P the single
 * pi/2:
 *
 *     rotateX = -asin(m12)      with 1 - |m12| at or above KX_TOLERANCE,
 *               -P              otherwise with m12 above 0, and P with any other
 *     rotateY = atan2(m02, m22) with |m22| at or above KX_TOLERANCE,
 *               0               otherwise with |m02| below KX_TOLERANCE,
 *               P               otherwise with m02 above 0, and -P with any other
 *
 * Rotating back about Y and then about X leaves RZ; at gimbal lock, a quarter turn about X, it
 * takes the rest of the rotation. With a, b the first two elements of the first row of
 * (RX(-rotateX)*RY(-rotateY))*m, where m has its unit columns:
 *
 *     rotateZ = -atan2(b, a)    with |a| at or above KX_TOLERANCE; -atan2(b, -a) when mirrored,
 *               -P              otherwise with b at or above KX_TOLERANCE, P with b at or below
 *                               -KX_TOLERANCE
 *               0               otherwise
 *
 * With scales above 0, perpendicular columns and the last row 0 0 0 1, the angles and scales
 * rebuild the block, also of a mirror that is detected. Near a quarter turn about X a rotation
 * comes back less exactly: to 1.4e-3 within the 0.0014 radians where -P or P replaces the arcsine,
 * to 2e-5 outside. T*RY*RX*RZ*diag(-s0, s1, s2) gives its own angles, with rotateX within a quarter
 * turn; any other mirror gives those of the matrix with its first column negated.
 *
 * - Aliasing: position and scale must be apart from m and from each other.
 * - Null: position, scale or both may be null; a null output is skipped and changes nothing else.
 * - Degenerate: there is no failure. A column of length at or below KX_TOLERANCE is not made unit;
 *   its length is its scale all the same. A shear is not reported. The last row divides nothing,
 *   but counts in the determinant: a unit block with m33 = -1 reads as a mirror.
 * - Rounding: singles are the determinant and, for rotateZ, all angles, sines, cosines and elements
 *   of the products.
 *
 * @param[in]  m         the transform
 * @param[out] position  translation; angles in radians, rotateX from -pi/2 to pi/2, the others
 *                       from -pi to pi; or null
 * @param[out] scale     the three scales; or null
 */
KX_API void KXM4MatrixComponents(const KXM4 *m, KXPosition *position, KXV3 *scale);

/**
 * Translation, angle and scale of a transform of the plane, taken as T*R(angle)*diag(s0, s1).
 *
 * The scales are the lengths of the first two columns, without the last row; the columns are then
 * made unit if longer than KX_TOLERANCE. scaleX is negated when mirrored. With P the single pi/2:
 *
 *     angle = -atan2(m01, m00)  with |m00| above KX_TOLERANCE; -atan2(m01, -m00) when mirrored,
 *             -P                otherwise with m01 at or above KX_TOLERANCE, P with m01 at or below
 *                               -KX_TOLERANCE
 *             0                 otherwise
 *
 * The first test is strict, unlike that for rotateZ in KXM4MatrixComponents.
 *
 * - Aliasing: the outputs must be apart from m and from each other.
 * - Null: any of the outputs may be null; a null output is skipped and changes nothing else.
 * - Degenerate: there is no failure. A column of length at or below KX_TOLERANCE is not made unit.
 * - Rounding: the determinant is a single, and so are the elements of the unit columns.
 *
 * @param[in]  m         the transform of the plane
 * @param[out] position  translation; or null
 * @param[out] angle     in radians, from -pi to pi; or null
 * @param[out] scaleX    length of the first column, negative when mirrored; or null
 * @param[out] scaleY    length of the second column; or null
 */
KX_API void KXM3MatrixComponents(const KXM3 *m, KXP2 *position, float *angle, float *scaleX,
                                 float *scaleY);

/** @} */

/** @name Quaternions
 * They rotate as the matrices do: right-handed, on column vectors. A quaternion and its negative
 * are the same rotation.
 */
/** @{ */

/**
 * Quaternion of a rotation about an axis: (n*sin(angle/2), cos(angle/2)), with n the axis made unit
 * by KXV3Normalise. The quaternion is not normalised afterwards.
 *
 * - Aliasing: out must be apart from axis.
 * - Degenerate: an axis of length at or below KX_TOLERANCE is not made unit, so neither is the
 *   quaternion; a zero axis gives 0 0 0 cos(angle/2).
 * - Rounding: the sine and n are singles.
 *
 * @param[in]  angle  in radians
 * @param[in]  axis   of any length
 * @param[out] out    the quaternion
 */
KX_API void KXGenerateQuat(float angle, const KXV3 *axis, KXQuat *out);

/**
 * Rotation matrix of a quaternion of any length, from about 1e-38 to 1e38:
 *
 *     k = 2/(x*x + y*y + z*z + w*w)   xs = k*x   ys = k*y   zs = k*z
 *
 * and, where xy is ys*x, xz is zs*x, yz is zs*y, wx is xs*w and so on,
 *
 *     1-(yy+zz)  xy-wz      xz+wy      0
 *     xy+wz      1-(xx+zz)  yz-wx      0
 *     xz-wy      yz+wx      1-(xx+yy)  0
 *     0          0          0          1
 *
 * - Aliasing: out must be apart from q.
 * - Degenerate: the zero quaternion divides by zero and gives NaN in the 3x3 block. Outside that
 *   range of lengths xs and ys over- or underflow: the block loses bits, or is not finite.
 * - Rounding: singles are xs, ys and all products but zz; zs and zz are not.
 *
 * @param[in]  q    the quaternion
 * @param[out] out  the rotation, with no translation
 */
KX_API void KXQuatToMatrix(const KXQuat *q, KXM4 *out);

/**
 * Quaternion of a rotation matrix. Only the 3x3 block is read. It must be a rotation: a scale
 * changes the quaternion's length and its angle too. Twice a quarter turn reads as 106 degrees.
 *
 * With a trace t = m00 + m11 + m22 above 0, s = sqrt(t + 1) and f = 0.5/s:
 *
 *     w = s*0.5   x = (m21 - m12)*f   y = (m02 - m20)*f   z = (m10 - m01)*f
 *
 * Otherwise with i the axis of the largest diagonal element, on a tie the lower one, j and k the
 * axes after it in the cycle X Y Z, s = sqrt(mii - mjj - mkk + 1) and f = 0.5/s:
 *
 *     q[i] = s*0.5   q[j] = (mji + mij)*f   q[k] = (mki + mik)*f   w = (mkj - mjk)*f
 *
 * So w, or else q[i], is never negative: a quaternion taken through KXQuatToMatrix may come back
 * negated.
 *
 * - Aliasing: out must be apart from m.
 *
 * @param[in]  m    the rotation
 * @param[out] out  the quaternion
 */
KX_API void KXMatrixToQuat(const KXM4 *m, KXQuat *out);

/** @} */

/** @name Viewing
 */
/** @{ */

/**
 * A placement in the order KX_ORDER_YXZ, with Y scaled and X shifted by an amount that depends on
 * depth, as the left and the right eye of a stereo view need it. The output comes first.
 *
 * The position places the scene relative to the eye; it is not inverted. Where the position of the
 * eye is known, take its view, the inverse from KXM4Position, and KXM4MatrixComponents of the view.
 *
 * With R*p + t = (x, y, z) the placed point, D the plane distance, o the side offset and s the y
 * scale, a point p goes to
 *
 *     x' = x + (o/D)*z - o        y' = s*y        z' = z
 *
 * so the plane z = D stays where it is, and what is in front of it and behind it is shifted to
 * opposite sides. The result is affine; nothing is divided by the depth.
 *
 * - Aliasing: out must be apart from position.
 * - Degenerate: a y scale that differs from 1 by no more than KX_TOLERANCE counts as 1. A side
 *   offset of no more than KX_TOLERANCE in magnitude counts as 0, and the plane distance is not
 *   used. A plane distance not above 0, or at or above KX_HUGE, gives x' = x - o.
 * - Rounding: the scale and the shift are matrices, multiplied from the left one after the other;
 *   their elements, o/D among them, and those of each product are singles.
 *
 * @param[out] out            the viewing matrix
 * @param[in]  position       translation in the caller's length unit, angles in radians
 * @param[in]  planeDistance  the z at which nothing is shifted, in that unit
 * @param[in]  sideOffset     how far a point at z = 0 moves along -X, in that unit
 * @param[in]  yScale         the factor for Y; 1 for none
 */
KX_API void KXM4Projection1(KXM4 *out, const KXPosition *position, float planeDistance,
                            float sideOffset, float yScale);

/** @} */

KX_END_DECLARATIONS

#endif
