/**
 * @file
 * Boxes, lines, rays, triangles and planes.
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
 * - Aliasing: out may be box, and must not be part of matrix.
 * - Null: not allowed.
 * - Degenerate: an inverted box comes back unchanged, and the matrix is not read. A box of one
 *   point gives the same point in both corners, up to the rounding of b. A NaN does not make a box
 *   inverted.
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
 * - Aliasing: point must not be part of box.
 * - Null: not allowed.
 * - Degenerate: a coordinate that is NaN moves nothing.
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
 * - Aliasing: other may be box; nothing changes then.
 * - Null: not allowed.
 * - Degenerate: an inverted box takes part with the numbers that it has. Of two zeros with
 *   different signs the first box keeps its own.
 *
 * @param[in,out] box    the box that grows
 * @param[in]     other  the box to be held, in the same unit
 */
KX_API void KXCombineBoxes(KXBox *box, const KXBox *other);

/**
 * Middle of a box: (maximum + minimum) * 0.5 on each axis.
 *
 * - Aliasing: out must not be part of box.
 * - Null: not allowed.
 * - Degenerate: an inverted box gives what the formula gives.
 *
 * @param[in]  box  the box
 * @param[out] out  its middle, in the box's unit
 */
KX_API void KXBoxMidPoint(const KXBox *box, KXP3 *out);

/**
 * Extent of a box: maximum - minimum on each axis, the vector from corner to corner.
 *
 * - Aliasing: out must not be part of box.
 * - Null: not allowed.
 * - Degenerate: an inverted box gives negative components.
 *
 * @param[in]  box  the box
 * @param[out] out  its diagonal, in the box's unit
 */
KX_API void KXBoxDiagonal(const KXBox *box, KXV3 *out);

/**
 * Tells whether on all three axes the maximum is at or above the minimum.
 *
 * - Null: not allowed.
 * - Degenerate: a NaN in any corner gives 0, though such a box is not inverted.
 *
 * @param[in] box  the box
 * @return 1 if it is valid, 0 if not
 */
KX_API int32_t KXIsValidBox(const KXBox *box);

/** @} */

/** @name Lines and rays
 */
/** @{ */

/**
 * Carries a line through a transform: both ends as KXM4P3I1 moves them.
 *
 * - Aliasing: result may be line, and must not be part of matrix.
 * - Null: not allowed.
 * - Degenerate: none; a line whose ends are one point stays one point.
 *
 * @param[in]  line    the line, in the caller's length unit
 * @param[in]  matrix  the transform; row 3 is not read
 * @param[out] result  the line carried
 */
KX_API void KXTransformLine(const KXLine *line, const KXM4 *matrix, KXLine *result);

/**
 * Carries a ray through a transform: the origin as KXM4P3I1 moves it, the direction as KXM4P3I0
 * turns it and KXV3Normalise then makes it unit length. So a parameter along the result measures
 * length in the space it is carried to, whatever it measured before.
 *
 * - Aliasing: result may be ray, and must not be part of matrix.
 * - Null: not allowed.
 * - Degenerate: a carried direction at or below KX_TOLERANCE in length stays as it is.
 *
 * @param[in]  ray     the ray, in the caller's length unit; its direction of any length
 * @param[in]  matrix  the transform; row 3 is not read
 * @param[out] result  the ray carried
 */
KX_API void KXTransformRay(const KXRay *ray, const KXM4 *matrix, KXRay *result);

/**
 * Distance of a point from the line through a ray, times the length of the ray's direction: the
 * length of the cross product of w = point - origin with the direction d.
 *
 *     cx = w.y*d.z - w.z*d.y      cz = w.x*d.y - w.y*d.x      cy = w.x*d.z - w.z*d.x
 *     sqrt(cy*cy + cz*cz + cx*cx)
 *
 * w.y, w.z, cx and cz are singles; w.x and cy are not. The line runs on behind the origin.
 *
 * - Null: not allowed.
 * - Degenerate: a direction of 0 gives 0.
 *
 * @param[in] ray    the ray; with a unit direction the result is the distance itself
 * @param[in] point  the point, in the ray's unit
 * @return the distance in that unit times the direction's length, unrounded
 */
KX_API double KXRayPointDistance(const KXRay *ray, const KXP3 *point);

/** @} */

/** @name Lines and rays against boxes
 * Both clip the path's parameter t against the box's three slabs, x, then y, then z. Two things a
 * host has to know.
 *
 * An axis along which the path moves by less than KX_TOLERANCE settles the test by itself, when its
 * turn comes: the verdict is 1 if the start is between the box's faces on that axis, else 0. Axes
 * behind it are not looked at. So a contact may be told that is none: a ray along X is told to meet
 * a box that it passes by in Z. And a contact may be missed, where a path that starts beside the
 * slab drifts into it by less than KX_TOLERANCE for each t, or touches an edge and misses it by
 * rounding. As a filter in front of an exact test the first costs time, and the second asks for
 * boxes grown by a little more than KX_TOLERANCE times the largest t that matters.
 *
 * The point written is a point of contact only where the last step was reached; see the tables.
 */
/** @{ */

/**
 * Tells whether a line meets a box, and where first.
 *
 * With s and e its ends and the steps of d = e - s singles: t1 = (lo - s) * (1/d) and
 * t2 = (hi - s) * (1/d) on each axis, unrounded.
 *
 *     the way out                                              result   point
 *     box inverted; or both ends outside on the same side        0      untouched
 *     the start is in the box or on its surface                  1      the start
 *     an axis with |d| below KX_TOLERANCE                      0 or 1   the start
 *     the slabs have no t in common, or none from 0 to 1         0      the start
 *     contact, t the highest of the lower of each t1 and t2      1      d*t + s, where it enters
 *
 * - Aliasing: point must be apart from line and box.
 * - Null: point may be null; the result is the same.
 * - Degenerate: a flat box, or one of a single point, can be met. A line of no length is in the box
 *   or not.
 *
 * @param[in]  line   the line, in the box's length unit
 * @param[in]  box    the box
 * @param[out] point  the point, as the table says; or null
 * @return 1 for contact, else 0
 */
KX_API int32_t KXLineIxBox(const KXLine *line, const KXBox *box, KXP3 *point);

/**
 * Tells whether a ray meets a box, and where: where it enters or, from inside, where it leaves.
 *
 * With o its origin and d its direction: t1 = (lo - o) * (1/d) and t2 = (hi - o) * (1/d) on each
 * axis, unrounded.
 *
 *     the way out                                              result   point
 *     box inverted                                               0      untouched
 *     an axis with |d| below KX_TOLERANCE                      0 or 1   the origin
 *     the slabs have no t in common, or none at or above 0       0      the origin
 *     contact from outside, t as for a line                      1      d*t + o, where it enters
 *     from inside, t the lowest of the higher of each t1 and t2  1      d*t + o, where it leaves
 *
 * t goes no further than KX_HUGE. There is no other limit.
 *
 * - Aliasing: point must be apart from ray and box.
 * - Null: point may be null; the result is the same.
 * - Degenerate: a flat box, or one of a single point, can be met. A direction of 0 is settled on
 *   the x axis alone.
 *
 * @param[in]  ray    the ray, in the box's length unit; its direction of any length
 * @param[in]  box    the box
 * @param[out] point  the point, as the table says; or null
 * @return 1 for contact, else 0
 */
KX_API int32_t KXRayIxBox(const KXRay *ray, const KXBox *box, KXP3 *point);

/** @} */

/** @name Lines and rays against triangles
 * The first half finds where the path crosses the triangle's plane, and stores that point h in
 * singles. The plane is taken as the record has it, at any scale and either side up; it is never
 * compared with the corners. The second half drops the axis along which the plane's normal is
 * largest (on a tie x before y before z), and tests in the two coordinates p and q that are left
 * whether h is in the triangle; its edges and corners belong to it. After h has passed the
 * rectangle around the corners, with (hp, hq), (ep, eq) and (fp, fq) the singles of h, the second
 * and the third corner less the first:
 *
 *     ep equal to 0:  beta = hp/fp                     alpha = (hq - beta*fq)/eq
 *     otherwise:      beta = (hq*ep - eq*hp)/den       alpha = (hp - beta*fp)/ep
 *                     den = fq*ep - eq*fp
 *
 * beta is single; alpha, den and the sums are not. Inside: beta from 0 to 1, alpha at or above 0,
 * alpha + beta at or below 1.
 *
 * The tolerances are absolute. A path whose step times the normal comes to less than KX_TOLERANCE
 * is parallel: with a unit direction and a unit normal that is a millionth of a radian. A triangle
 * is not hit when |den|, twice its projected area, is below KX_TOLERANCE: with legs of less than a
 * thousandth. With ep equal to 0 it is |fp| or |eq| that must not be: legs of less than a
 * millionth. So a small triangle may be hit with its corners in one order and not in another.
 *
 * Where ep is small beside fp and not 0, the rounding of beta is divided by it, and rays at the
 * triangle's inside miss: kx_triangle of everyday.h begins a triangle at the corner that avoids
 * this, kx_fit_mesh scales small meshes up, and docs/meshes-and-rays.md has figures and a recipe.
 *
 * A start on the plane does not cross it.
 */
/** @{ */

/**
 * Tells whether a line passes through a triangle of the host's mesh.
 *
 * With s and e its ends, delta = e - s, denom = a*delta.x + b*delta.y + c*delta.z and
 * dist = a*s.x + b*s.y + c*s.z + d all singles, t = -(dist/denom) unrounded, and h = delta*t + s.
 *
 *     the way out                                              result   point
 *     |denom| below KX_TOLERANCE; the start on the plane or
 *     running away from it; t above 1                            0      untouched
 *     h outside the triangle, or the triangle too small          0      h
 *     hit                                                        1      h
 *
 * - Aliasing: point must be apart from line, triangle and vertices.
 * - Null: not allowed.
 * - Degenerate: a plane of zeros, a line of no length and a triangle of no area are never hit.
 *
 * @param[in]  line      the line, in the vertices' length unit
 * @param[in]  triangle  the corners' indices and the plane; each index must lie in the array
 * @param[in]  vertices  the host's vertices, indexed by triangle, packed: twelve bytes each
 * @param[out] point     the point, as the table says
 * @return 1 for a hit, else 0
 */
KX_API int32_t KXLineIxTriangle(const KXLine *line, const KXTriangle *triangle,
                                const KXP3 *vertices, KXP3 *point);

/**
 * Tells whether a ray passes through a triangle of the host's mesh.
 *
 * As KXLineIxTriangle, with the origin for the start, the direction as it stands for delta, and no
 * limit on t:
 *
 *     the way out                                              result   point
 *     |denom| below KX_TOLERANCE; the origin on the plane or
 *     the ray pointing away from it                              0      untouched
 *     h outside the triangle, or the triangle too small          0      h
 *     hit                                                        1      h
 *
 * - Aliasing: point must be apart from ray, triangle and vertices.
 * - Null: not allowed.
 * - Degenerate: a plane of zeros, a direction of 0 and a triangle of no area are never hit.
 *
 * @param[in]  ray       the ray, in the vertices' length unit
 * @param[in]  triangle  the corners' indices and the plane; each index must lie in the array
 * @param[in]  vertices  the host's vertices, indexed by triangle, packed: twelve bytes each
 * @param[out] point     the point, as the table says
 * @return 1 for a hit, else 0
 */
KX_API int32_t KXRayIxTriangle(const KXRay *ray, const KXTriangle *triangle, const KXP3 *vertices,
                               KXP3 *point);

/** @} */

/** @name Planes
 */
/** @{ */

/**
 * The plane through three points, with a unit normal. Seen from the side the normal points to,
 * first, second, third run counter-clockwise.
 *
 * With A = second - first and B = third - second in singles, N = A x B, S its squared length and
 * f = 1/sqrt(S):
 *
 *     a = N.x*f   b = N.y*f   c = N.z*f   d = -(a*second.x + b*second.y + c*second.z)
 *
 * A first attempt has N, a and b in singles and c not yet rounded where it enters d; it stands when
 * S is above KX_TOLERANCE. A second has nothing rounded but what is stored; it stands when S is
 * above 1e-16. So triangles with legs down to a ten-thousandth or so have a plane. d is a negation:
 * a plane through the origin has -0.
 *
 * - Aliasing: first, second and third may be one record, two of them or all; out must not be part
 *   of one.
 * - Null: not allowed.
 * - On status 1: the points are one, on one line, or too near each other; out is the plane 1, 0, 0,
 *   -second.x, through the second point.
 *
 * @param[in]  first   a point, in the caller's length unit
 * @param[in]  second  another; the plane passes through it on every path
 * @param[in]  third   another
 * @param[out] out     the plane; written on both statuses
 * @return 0 for done, 1 when the points define no plane
 */
KX_API int32_t KXPlaneEquation(const KXP3 *first, const KXP3 *second, const KXP3 *third,
                               KXPlane *out);

/**
 * Turns a point about an axis through the origin, right-handed: about Z a positive angle takes +X
 * towards +Y. The point moves in the plane at right angles to the axis.
 *
 * With x, y, z the axis, C the cosine as a single, s the sine and t = 1 - C, the matrix applied is
 *
 *     x*x + (1 - x*x)*C    x*y*t - z*s          x*z*t + y*s
 *     x*y*t + z*s          y*y + (1 - y*y)*C    y*z*t - x*s
 *     x*z*t - y*s          y*z*t + x*s          z*z + (1 - z*z)*C
 *
 * in which y*y, z*z, x*y*t, x*z*t (and x*z before it meets t), y*z*t, y*s and z*s are singles.
 * Small sines and cosines are kept, unlike in KXM4Orientation.
 *
 * - Aliasing: axis may be point.
 * - Null: not allowed.
 * - Degenerate: the axis is not made unit length; with any other length the matrix is what it is.
 *   An axis of 0 multiplies the point by the cosine.
 *
 * @param[in,out] point  the point, in the caller's length unit
 * @param[in]     axis   the axis, a unit vector
 * @param[in]     angle  the angle, in radians
 */
KX_API void KXRotateInPlane(KXP3 *point, const KXV3 *axis, float angle);

/** @} */

KX_END_DECLARATIONS

#endif
