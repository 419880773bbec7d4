/**
 * @file
 * From angles and positions to matrices, and the viewing matrix.
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
 * Aliasing: matrix and inverse may be one record; the inverse is what remains.
 * Null: matrix, inverse or both may be null; a null output is skipped.
 * Degenerate: an angle that is infinite or NaN has no cosine or sine; both count as +0, and the
 * outputs are finite but no rotations. An order
 * outside 0 to 5 multiplies nothing: the fourth row and column of each output are written as 0 0 0
 * 1, and its 3x3 block stays untouched.
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
 * Aliasing: matrix and inverse may be one record; the inverse is what remains. Neither may touch
 * position.
 * Null: matrix, inverse or both may be null; a null output is skipped. position must not be null.
 * Degenerate: angles and orders as in KXM4Orientation. For an order outside 0 to 5 the inverse's
 * translation is formed with the block that its record held.
 *
 * @param[out] matrix    the placement; or null
 * @param[out] inverse   the way back; or null
 * @param[in]  position  translation in the caller's length unit, angles in radians
 * @param[in]  order     the order of the factors, one of KX_ORDER_
 */
KX_API void KXM4Position(KXM4 *matrix, KXM4 *inverse, const KXPosition *position,
                         KXRotationOrder order);

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
 * Aliasing: out must be apart from position.
 * Null: not allowed.
 * Degenerate: a y scale that differs from 1 by no more than KX_TOLERANCE is taken as 1. A side
 * offset of no more than KX_TOLERANCE in magnitude is taken as 0, and the plane distance is not
 * looked at. A plane distance not above 0, or at or above KX_HUGE, leaves x' = x - o.
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
