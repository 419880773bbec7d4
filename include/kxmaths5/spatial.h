/**
 * @file
 * Axis-aligned boxes.
 */
#ifndef KXMATHS5_SPATIAL_H
#define KXMATHS5_SPATIAL_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Boxes
 * A box is valid when each maximum is at or above its minimum; a box of no extent, or a single
 * point, is valid. A box with a minimum above its maximum is inverted. To gather points, start from
 * the inverted box with KX_HUGE in the minimum and -KX_HUGE in the maximum and put them in, as long
 * as no coordinate is beyond 1e20; or start with the first point in both corners.
 */
/** @{ */

/**
 * Carries a box through a transform: the axis-aligned box around the transformed box.
 *
 * For each row r of the matrix lo and hi start at m[r][3]. For each column c in turn, with
 * a = minimum[c]*m[r][c] and b = maximum[c]*m[r][c], the lower of the two is added to lo and the
 * other to hi. b, lo and hi are singles at every step; a is not. The fourth row is not read.
 *
 * Aliasing: out may be box, and must not be part of matrix.
 * Null: not allowed.
 * Degenerate: an inverted box comes back unchanged, and the matrix is not read. A box of one point
 * gives the same point in both corners, up to the rounding of b. A NaN does not make a box inverted.
 *
 * The singles are rounded to nearest, not outwards: a corner carried by itself can lie outside the
 * box by the last bit or so.
 *
 * @param[in]  box     the box, in the caller's length unit
 * @param[in]  matrix  the transform, taken as affine
 * @param[out] out     the box around the transformed box
 */
KX_API void KXTransformBox(const KXBox *box, const KXM4 *matrix, KXBox *out);

/**
 * Grows a box until it holds a point. The point comes first.
 *
 * Each minimum above the point's coordinate takes it, and so does each maximum below it. An
 * inverted box can take both from one point.
 *
 * Aliasing: point must not be part of box.
 * Null: not allowed.
 * Degenerate: a coordinate that is NaN moves nothing.
 *
 * @param[in]     point  the point, in the box's unit
 * @param[in,out] box    the box; untouched where the point is inside or on a face
 * @return 1 if the box changed, 0 if not
 */
KX_API int32_t KXPutPointInBox(const KXP3 *point, KXBox *box);

/**
 * Grows a box until it holds another: the lower of each two minimums, the higher of each two
 * maximums. The union is left in the first argument.
 *
 * Aliasing: other may be box; nothing changes then.
 * Null: not allowed.
 * Degenerate: an inverted box takes part with the numbers that it has. Of two zeros with different
 * signs the first box keeps its own.
 *
 * @param[in,out] box    the box that grows
 * @param[in]     other  the box to be held, in the same unit
 */
KX_API void KXCombineBoxes(KXBox *box, const KXBox *other);

/**
 * Middle of a box: (maximum + minimum) * 0.5 on each axis.
 *
 * Aliasing: out must not be part of box.
 * Null: not allowed.
 * Degenerate: an inverted box gives what the formula gives.
 *
 * @param[in]  box  the box
 * @param[out] out  its middle, in the box's unit
 */
KX_API void KXBoxMidPoint(const KXBox *box, KXP3 *out);

/**
 * Extent of a box: maximum - minimum on each axis, the vector from corner to corner.
 *
 * Aliasing: out must not be part of box.
 * Null: not allowed.
 * Degenerate: an inverted box gives negative components.
 *
 * @param[in]  box  the box
 * @param[out] out  its diagonal, in the box's unit
 */
KX_API void KXBoxDiagonal(const KXBox *box, KXV3 *out);

/**
 * Tells whether on all three axes the maximum is at or above the minimum.
 *
 * Null: not allowed.
 * Degenerate: a NaN in any corner gives 0, though such a box is not inverted.
 *
 * @param[in] box  the box
 * @return 1 if it is valid, 0 if not
 */
KX_API int32_t KXIsValidBox(const KXBox *box);

/** @} */

KX_END_DECLARATIONS

#endif
