/**
 * @file
 * From angles and positions to matrices and back, quaternions, and the viewing matrix.
 *
 * There are two ways of reading a transform back, and they are not interchangeable. With T a
 * translation, S = diag(s0, s1, s2) a scale, and RX, RY, RZ the rotations:
 *
 *                             KXM4Decompose              KXM4MatrixComponents
 *     takes the matrix as     T*S*RX*RY*RZ               T*RY*RX*RZ*S
 *     scale is the length of  the rows of the block      the columns of the block
 *     a point is              turned, then scaled along  scaled along its own axes,
 *                             the fixed axes             then turned
 *     shear, perspective      separated                  not separated
 *     m[3][3]                 divided out                not divided out
 *     built again by          KXM4Compose                KXM4Position with KX_ORDER_YXZ, times
 *                                                        KXM4Scale at its right
 *
 * One matrix read both ways, a quarter turn about Z: its first row and its second column have the
 * length 2.
 *
 *     0 -2 0 0    KXM4Decompose:         scale 2 1 1, rotateZ pi/2
 *     1  0 0 0    KXM4MatrixComponents:  scale 1 2 1, rotateZ pi/2
 *     0  0 1 0
 *     0  0 0 1
 *
 * And one that only turns, built with the angles 0.3, 0.4, 0.5 and KX_ORDER_XYZ:
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
 * and an order names their product from left to right; the rightmost acts first. The inverse is
 * built from the same cosines and sines with the factors the other way round, not by inverting; it
 * rounds for itself and is not in general the transpose to the last bit:
 *
 *     order           matrix                  inverse
 *     KX_ORDER_XYZ    RX(x)*(RY(y)*RZ(z))     RZ(-z)*(RY(-y)*RX(-x))
 *     KX_ORDER_XZY    RX(x)*(RZ(z)*RY(y))     RY(-y)*(RZ(-z)*RX(-x))
 *     KX_ORDER_YXZ    RY(y)*(RX(x)*RZ(z))     RZ(-z)*(RX(-x)*RY(-y))
 *     KX_ORDER_YZX    RY(y)*(RZ(z)*RX(x))     RX(-x)*(RZ(-z)*RY(-y))
 *     KX_ORDER_ZXY    RZ(z)*(RX(x)*RY(y))     RY(-y)*(RX(-x)*RZ(-z))
 *     KX_ORDER_ZYX    RZ(z)*(RY(y)*RX(x))     RX(-x)*(RY(-y)*RZ(-z))
 *
 * The elements of the inner product are singles. The six cosines and sines are singles too, and
 * each becomes +0 unless its magnitude is at or above the double 1e-07, so that a quarter turn
 * gives exact zeros.
 */
/** @{ */

/**
 * Rotation from three angles, and its inverse. The outputs come first.
 *
 * - Aliasing: matrix and inverse may be one record; the inverse is what remains.
 * - Null: matrix, inverse or both may be null; a null output is skipped.
 * - Degenerate: an angle that is infinite or NaN has no cosine or sine; both count as +0, and the
 *   outputs are finite but no rotations. An order outside 0 to 5 multiplies nothing: the fourth row
 *   and column of each output are written as 0 0 0 1, and its 3x3 block stays untouched.
 *
 * @param[out] matrix   the rotation, with no translation; or null
 * @param[out] inverse  the rotation back; or null
 * @param[in]  x        the angle about X, in radians
 * @param[in]  y        the angle about Y, in radians
 * @param[in]  z        the angle about Z, in radians
 * @param[in]  order    the order of the factors, one of KX_ORDER_
 */
KX_API void KXM4Orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z,
                            KXRotationOrder order);

/**
 * Placement from a position record, and its inverse. The outputs come first.
 *
 * The matrix takes a point p to R*p + t: it turns first, as KXM4Orientation does, and moves after.
 * The inverse takes p back to R'*p - R'*t, with R' the inverse rotation; R'*t is rounded to singles
 * before it is negated, so that a zero translation leaves -0 there.
 *
 * - Aliasing: matrix and inverse may be one record; the inverse is what remains. Neither may touch
 *   position.
 * - Null: matrix, inverse or both may be null; a null output is skipped. position must not be null.
 * - Degenerate: angles and orders as in KXM4Orientation. For an order outside 0 to 5 the inverse's
 *   translation is formed with the block that its record held.
 *
 * @param[out] matrix    the placement; or null
 * @param[out] inverse   the way back; or null
 * @param[in]  position  translation in the caller's length unit, angles in radians
 * @param[in]  order     the order of the factors, one of KX_ORDER_
 */
KX_API void KXM4Position(KXM4 *matrix, KXM4 *inverse, const KXPosition *position,
                         KXRotationOrder order);

/** @} */

/** @name Decomposition
 * A transform taken apart by its rows into T*S*H*(RX*RY*RZ), and built again from T, S and the
 * angles: T the translation, S = diag(scaleX, scaleY, scaleZ), and H the shear
 *
 *     1        0        0
 *     shearXY  1        0
 *     shearXZ  shearYZ  1
 *
 * S stands at the left of the rotation: a point is turned first and scaled along the fixed axes
 * after. KXM4Compose leaves H and the perspective out, so what had either does not come back. The
 * table at the head of this file sets this beside KXM4MatrixComponents, which reads columns and
 * angles in another order.
 */
/** @{ */

/**
 * Takes a transform apart: scale, shear, rotation, translation, perspective.
 *
 * All sixteen elements are multiplied by 1/m33 first, if |m33| is at or above KX_TOLERANCE. Then,
 * with V0, V1, V2 the rows of the 3x3 block, in this order, and each V/|V| as by KXV3Normalise:
 *
 *     scaleX  = |V0|   V0 = V0/|V0|
 *     shearXY = V0.V1  V1 = V1 - shearXY*V0
 *     scaleY  = |V1|   V1 = V1/|V1|   shearXY = shearXY/|V1|
 *     shearXZ = V0.V2  V2 = V2 - shearXZ*V0
 *     shearYZ = V1.V2  V2 = V2 - shearYZ*V1
 *     scaleZ  = |V2|   V2 = V2/|V2|   shearXZ = shearXZ/|V2|   shearYZ = shearYZ/|V2|
 *
 * The elements, the dot products, the rows at every step and V1 x V2 are singles; the lengths that
 * divide the shears are not rounded before. When V0.(V1 x V2) is below 0, all three scales and all
 * three rows change sign: any mirror comes back as three negative scales. Then the angles of
 * RX*RY*RZ, whose rows these are:
 *
 *     rotateY = y = asin(V0.z)
 *     |cos y| at or above KX_TOLERANCE:  rotateX = atan2(-V1.z, V2.z)  rotateZ = atan2(-V0.y, V0.x)
 *     otherwise, at y = pi/2 or -pi/2:   rotateX = atan2(V1.x, V1.y), at -pi/2 atan2(-V1.x, V1.y),
 *                                        rotateZ = 0
 *
 * so that composing gives the rotation back on both sides. The translation is m03, m13, m23. The
 * perspective is 0 0 0 1 when |m30|, |m31| and |m32| are all below KX_TOLERANCE; otherwise it is
 * Q*(m30, m31, m32, m33), as KXM4P4 applies Q, the inverse by KXM4Inverse of the matrix with the
 * last row 0 0 0 1; Q itself, not its transpose.
 *
 * - Aliasing: components may be the same sixteen floats as m.
 * - Null: not allowed.
 * - Degenerate: singular is only a determinant of exactly 0 of the matrix with the last row 0 0 0
 *   1, or, where there is perspective, a block that KXM4Inverse refuses. A row of length at or
 *   below KX_TOLERANCE is not made unit, and rotateY is then the arcsine of its short element. A
 *   block that is singular but for its last bits passes, and a row of it may end as zeros: its
 *   scale is 0 then, and its shears are infinite or NaN.
 * - On status 1: components stays untouched.
 *
 * @param[in]  m           the transform
 * @param[out] components  its parts; angles in radians, rotateY from -pi/2 to pi/2
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM4Decompose(const KXM4 *m, KXComponents *components);

/**
 * Builds a transform from parts: T*(S*((RX*RY)*RZ)). The output comes first.
 *
 * Each row i of the block is scale i times row i of the rotation; the last column is the
 * translation, the last row 0 0 0 1. Sines and cosines are singles, and small ones stay as they
 * are: a quarter turn leaves about -4.4e-08 where KXM4Orientation has an exact 0. The elements of
 * each product are singles. Shear and perspective are not read.
 *
 * - Aliasing: out may be the same sixteen floats as components.
 * - Null: not allowed.
 *
 * @param[out] out         the transform
 * @param[in]  components  its parts, angles in radians
 */
KX_API void KXM4Compose(KXM4 *out, const KXComponents *components);

/**
 * Takes a transform of the plane apart, by KXM4Decompose of the same transform in space.
 *
 * The results are in scaleX, scaleY, shearXY, rotateZ, translateX and translateY; the last row of m
 * is not read. A mirror comes back, as in space, as three negative scales and a rotateX of pi,
 * which KXM3Compose does not read: only what has no mirror comes back from there.
 *
 * - Aliasing: components must be apart from m.
 * - Null: not allowed.
 * - Degenerate: singular is only a determinant of exactly 0.
 * - On status 1: components stays untouched.
 *
 * @param[in]  m           the transform of the plane
 * @param[out] components  its parts, all sixteen written
 * @return 0 for done, 1 for singular
 */
KX_API int32_t KXM3Decompose(const KXM3 *m, KXComponents *components);

/**
 * Builds a transform of the plane from scaleX, scaleY, rotateZ, translateX and translateY, as
 * KXM4Compose does in space; nothing else is read. The output comes first; its last row is 0 0 1.
 *
 * - Aliasing: out must be apart from components.
 * - Null: not allowed.
 *
 * @param[out] out         the transform of the plane
 * @param[in]  components  its parts, the angle in radians
 */
KX_API void KXM3Compose(KXM3 *out, const KXComponents *components);

/** @} */

/** @name Components
 * Position, angles and scale read straight off a transform by its columns, taken as
 * T*RY*RX*RZ*diag(s0, s1, s2): the way back from KXM4Position with KX_ORDER_YXZ, and from no other
 * order. The scale stands at the right of the rotation: a point is scaled along its own axes first.
 * The table at the head of this file sets this beside KXM4Decompose, which reads rows and angles in
 * another order.
 *
 * A matrix counts as mirrored when the determinant of the whole of it, last row included, is below
 * -KX_TOLERANCE as a single. Only the first scale takes the sign.
 */
/** @{ */

/**
 * Reads translation, angles and scale off a transform of space.
 *
 * Each scale is the length of a column of the 3x3 block, and each column is then made unit as
 * KXV3Normalise does it; -scale.x when mirrored. From those columns, with P the single pi/2:
 *
 *     rotateX = -asin(m12)      with 1 - |m12| at or above KX_TOLERANCE,
 *               -P              otherwise with m12 above 0, and P with any other
 *     rotateY = atan2(m02, m22) with |m22| at or above KX_TOLERANCE,
 *               0               otherwise with |m02| below KX_TOLERANCE,
 *               P               otherwise with m02 above 0, and -P with any other
 *
 * At a quarter turn about X the rest of the rotation goes to Z. Turning back about Y and then about
 * X leaves RZ: with a, b the first two elements of the first row of
 *
 *     (RX(-rotateX)*RY(-rotateY))*m
 *
 * where m has its unit columns, and all angles, sines, cosines and elements are singles,
 *
 *     rotateZ = -atan2(b, a)    with |a| at or above KX_TOLERANCE; -atan2(b, -a) when mirrored,
 *               -P              otherwise with b at or above KX_TOLERANCE, P with b at or below
 *                               -KX_TOLERANCE
 *               0               otherwise
 *
 * With positive s0, s1, s2, columns at right angles and the last row 0 0 0 1, the angles and scales
 * read build the block again, mirrored or not. T*RY*RX*RZ*diag(-s0, s1, s2) gives its own angles
 * back, as T*RY*RX*RZ*diag(s0, s1, s2) does, with the rotation about X within a quarter turn; of
 * any other mirror the angles are those of the matrix with its first column negated.
 *
 * - Aliasing: position and scale must be apart from m and from each other.
 * - Null: position, scale or both may be null; a null output is skipped and changes nothing else.
 * - Degenerate: there is no failure. A column of length at or below KX_TOLERANCE is not made unit,
 *   its length is its scale all the same. Columns that are not at right angles keep their shear,
 *   which is not reported. The last row divides nothing, but counts through the determinant: m33 =
 *   -1 under a unit block reads as a mirror. A mirror whose determinant is not below -KX_TOLERANCE,
 *   as of small matrices, is read as none.
 *
 * @param[in]  m         the transform
 * @param[out] position  translation; angles in radians, rotateX from -pi/2 to pi/2, the others
 *                       from -pi to pi; or null
 * @param[out] scale     the three scales; or null
 */
KX_API void KXM4MatrixComponents(const KXM4 *m, KXPosition *position, KXV3 *scale);

/**
 * Reads translation, angle and scale off a transform of the plane, as T*R(angle)*diag(s0, s1).
 *
 * The scales are the lengths of the first two columns, without the last row; the columns are then
 * made unit if longer than KX_TOLERANCE. -scaleX when mirrored. With P the single pi/2:
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
 * The sense of rotation is that of the matrices: right-handed, on column points. A quaternion and
 * its negative are the same rotation.
 */
/** @{ */

/**
 * Quaternion of a turn about an axis: (n*sin(angle/2), cos(angle/2)), with n the axis made unit by
 * KXV3Normalise and the sine a single. The quaternion is not normalised afterwards.
 *
 * - Aliasing: out must be apart from axis.
 * - Null: not allowed.
 * - Degenerate: an axis of length at or below KX_TOLERANCE is not made unit, so that the quaternion
 *   is not either; a zero axis gives 0 0 0 cos(angle/2).
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
 * xs, ys and all products but zz are singles; zs and zz are not.
 *
 * - Aliasing: out must be apart from q.
 * - Null: not allowed.
 * - Degenerate: the zero quaternion divides by zero and gives NaN in the 3x3 block. Beyond the
 *   range of lengths xs and ys leave that of a single, and the block loses bits or is infinite.
 *
 * @param[in]  q    the quaternion
 * @param[out] out  the rotation, with no translation
 */
KX_API void KXQuatToMatrix(const KXQuat *q, KXM4 *out);

/**
 * Quaternion of a rotation matrix. Only the 3x3 block is read, and taken to be a rotation: a scale
 * is not taken out, and shows in the length of the quaternion.
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
 * So w, or else q[i], is never negative: a quaternion that went through KXQuatToMatrix may come
 * back negated.
 *
 * - Aliasing: out must be apart from m.
 * - Null: not allowed.
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
 * The viewing matrix: a placement in the order KX_ORDER_YXZ, then Y scaled and X shifted by an
 * amount that changes with depth. The output comes first.
 *
 * With R*p + t = (x, y, z) the placed point, D the plane distance, o the side offset and s the y
 * scale, a point p goes to
 *
 *     x' = x + (o/D)*z - o        y' = s*y        z' = z
 *
 * so that the plane z = D stays where it is and the view moves sideways in front of it and behind:
 * what a left and a right eye need, with o of either sign. The result is affine; nothing is divided
 * by the depth. The scale and the shift are matrices, multiplied from the left one after the other;
 * their elements, o/D among them, and those of each product are singles.
 *
 * - Aliasing: out must be apart from position.
 * - Null: not allowed.
 * - Degenerate: a y scale that differs from 1 by no more than KX_TOLERANCE is taken as 1. A side
 *   offset of no more than KX_TOLERANCE in magnitude is taken as 0, and the plane distance is not
 *   looked at. A plane distance not above 0, or at or above KX_HUGE, leaves x' = x - o.
 *
 * @param[out] out            the viewing matrix
 * @param[in]  position       translation in the caller's length unit, angles in radians
 * @param[in]  planeDistance  the z at which nothing is shifted, in that unit
 * @param[in]  sideOffset     what a point at z = 0 is moved by along -X, in that unit
 * @param[in]  yScale         the factor for Y; 1 for none
 */
KX_API void KXM4Projection1(KXM4 *out, const KXPosition *position, float planeDistance,
                            float sideOffset, float yScale);

/** @} */

KX_END_DECLARATIONS

#endif
