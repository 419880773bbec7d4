/**
 * @file
 * Boxes, lines, rays, triangles and planes.
 */
#ifndef KXMATHS5_SPATIAL_H
#define KXMATHS5_SPATIAL_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Boxes
 * A box is valid when each maximum is at or above its minimum; it may be flat, or a single point. A
 * box with a minimum above its maximum is inverted. To collect points, start with the inverted box
 * that has KX_HUGE in the minimum and -KX_HUGE in the maximum, if no coordinate exceeds 1e20, or
 * with the first point in both corners.
 */
/** @{ */

/**
 * Axis-aligned box around a transformed box.
 *
 * For each row r of the matrix, lo and hi start at m[r][3]. For each column c in turn, with
 * a = minimum[c]*m[r][c] and b = maximum[c]*m[r][c], the lower of the two is added to lo and the
 * other to hi. The fourth row is not read.
 *
 * - Aliasing: out may be box, and must not be part of matrix.
 * - Degenerate: an inverted box is copied unchanged, and the matrix is not read. A box of one point
 *   gives the same point in both corners, up to the rounding of b. A NaN does not make a box
 *   inverted.
 * - Rounding: b, lo and hi are singles at every step; a is not. They are rounded to nearest, not
 *   outwards: a transformed corner can lie outside the box by a few last bits of the largest term.
 *
 * @param[in]  box     the box, in the caller's length unit
 * @param[in]  matrix  the transform, taken as affine
 * @param[out] out     the box around it
 */
KX_API void KXTransformBox(const KXBox *box, const KXM4 *matrix, KXBox *out);

/**
 * Extends a box to contain a point. The point comes first.
 *
 * Each minimum above the point's coordinate is set to it, and so is each maximum below it. For an
 * inverted box one point can set both.
 *
 * - Aliasing: point must not be part of box.
 * - Degenerate: a NaN coordinate changes nothing.
 *
 * @param[in]     point  the point, in the box's unit
 * @param[in,out] box    the box; untouched where the point is inside or on a face
 * @return 1 if the box changed, 0 if not
 */
KX_API int32_t KXPutPointInBox(const KXP3 *point, KXBox *box);

/**
 * Union of two boxes, stored in the first: the lower of the two minimums and the higher of the two
 * maximums on each axis.
 *
 * - Aliasing: other may be box.
 * - Degenerate: an inverted box is not treated specially. Of two zeros of different sign the first
 *   box keeps its own.
 *
 * @param[in,out] box    the box that is extended
 * @param[in]     other  the box to be contained, in the same unit
 */
KX_API void KXCombineBoxes(KXBox *box, const KXBox *other);

/**
 * Centre of a box: (maximum + minimum) * 0.5 on each axis.
 *
 * - Aliasing: out must not be part of box.
 * - Degenerate: an inverted box follows the formula.
 *
 * @param[in]  box  the box
 * @param[out] out  its centre, in the box's unit
 */
KX_API void KXBoxMidPoint(const KXBox *box, KXP3 *out);

/**
 * Extent of a box: maximum - minimum on each axis, the vector from corner to corner.
 *
 * - Aliasing: out must not be part of box.
 * - Degenerate: an inverted box gives negative components.
 *
 * @param[in]  box  the box
 * @param[out] out  its diagonal, in the box's unit
 */
KX_API void KXBoxDiagonal(const KXBox *box, KXV3 *out);

/**
 * Whether the maximum is at or above the minimum on all three axes.
 *
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
 * Transforms a line: both ends, as KXM4P3I1 does.
 *
 * - Aliasing: result may be line, and must not be part of matrix.
 *
 * @param[in]  line    the line, in the caller's length unit
 * @param[in]  matrix  the transform; row 3 is not read
 * @param[out] result  the transformed line
 */
KX_API void KXTransformLine(const KXLine *line, const KXM4 *matrix, KXLine *result);

/**
 * Transforms a ray: the origin as KXM4P3I1 does, the direction as KXM4P3I0 and then KXV3Normalise
 * do. So the parameter t along the result is a length in the space it is transformed to.
 *
 * - Aliasing: result may be ray, and must not be part of matrix.
 * - Degenerate: a transformed direction of length at or below KX_TOLERANCE is not normalised.
 * - Rounding: the direction is rounded to singles before it is normalised.
 *
 * @param[in]  ray     the ray, in the caller's length unit; its direction of any length
 * @param[in]  matrix  the transform; row 3 is not read
 * @param[out] result  the transformed ray
 */
KX_API void KXTransformRay(const KXRay *ray, const KXM4 *matrix, KXRay *result);

/**
 * Distance of a point from the infinite line through a ray, times the length of the ray's
 * direction: the length of the cross product of w = point - origin with the direction d.
 *
 *     cx = w.y*d.z - w.z*d.y      cz = w.x*d.y - w.y*d.x      cy = w.x*d.z - w.z*d.x
 *     sqrt(cy*cy + cz*cz + cx*cx)
 *
 * - Degenerate: a direction of 0 gives 0.
 * - Rounding: w.y, w.z, cx and cz are singles; w.x and cy are not.
 *
 * @param[in] ray    the ray; with a unit direction the result is the distance itself
 * @param[in] point  the point, in the ray's unit
 * @return the distance in that unit times the direction's length, unrounded
 */
KX_API double KXRayPointDistance(const KXRay *ray, const KXP3 *point);

/** @} */

/** @name Lines and rays against boxes
 * The slab method: the path's parameter t is clipped against the box's three slabs, x, then y, then
 * z. As a filter before an exact test it has two traps.
 *
 * False positives. An axis along which the path moves by less than KX_TOLERANCE decides at its
 * turn: the result is 1 if the start is between the faces on that axis, else 0, and the point is
 * the start. The axes after it are not tested, so a ray along X is reported to hit a box that it
 * passes in Z. Let an exact test follow.
 *
 * False negatives. A path that starts outside a slab and drifts into it by less than KX_TOLERANCE
 * for each t is missed, and so is one that touches an edge, by rounding. Enlarge the boxes by a
 * little more than KX_TOLERANCE times the largest t that matters.
 */
/** @{ */

/**
 * Whether a line hits a box, and where it enters.
 *
 * With s and e its ends, d = e - s, and t1 = (lo - s) * (1/d) and t2 = (hi - s) * (1/d) on each
 * axis:
 *
 *     outcome                                                  result   point
 *     box inverted; or both ends outside on the same side        0      untouched
 *     the start is in the box or on its surface                  1      the start
 *     an axis with |d| below KX_TOLERANCE                      0 or 1   the start
 *     the slabs have no t in common, or none from 0 to 1         0      the start
 *     hit; t is the largest of the lower of each t1 and t2       1      d*t + s
 *
 * - Aliasing: point must be apart from line and box.
 * - Null: point may be null; the result is the same.
 * - Degenerate: a box may be flat or a single point. A line of no length is in the box or not.
 * - Rounding: d is a single; t1 and t2 are not rounded.
 *
 * @param[in]  line   the line, in the box's length unit
 * @param[in]  box    the box
 * @param[out] point  the point, as the table says; or null
 * @return 1 for a hit, else 0
 */
KX_API int32_t KXLineIxBox(const KXLine *line, const KXBox *box, KXP3 *point);

/**
 * Whether a ray hits a box, and where it enters or, from inside, where it leaves.
 *
 * With o its origin, d its direction, and t1 = (lo - o) * (1/d) and t2 = (hi - o) * (1/d) on each
 * axis:
 *
 *     outcome                                                  result   point
 *     box inverted                                               0      untouched
 *     an axis with |d| below KX_TOLERANCE                      0 or 1   the origin
 *     the slabs have no t in common, or none at or above 0       0      the origin
 *     the origin on the surface                                  1      the origin
 *     hit from outside, t as for a line                          1      d*t + o
 *     from inside; t the smallest of the higher of t1 and t2     1      d*t + o
 *
 * t has no limit but KX_HUGE.
 *
 * - Aliasing: point must be apart from ray and box.
 * - Null: point may be null; the result is the same.
 * - Degenerate: a box may be flat or a single point. A direction of 0 is decided on the x axis.
 * - Rounding: t1 and t2 are not rounded.
 *
 * @param[in]  ray    the ray, in the box's length unit; its direction of any length
 * @param[in]  box    the box
 * @param[out] point  the point, as the table says; or null
 * @return 1 for a hit, else 0
 */
KX_API int32_t KXRayIxBox(const KXRay *ray, const KXBox *box, KXP3 *point);

/** @} */

/** @name Lines and rays against triangles
 * First the point h where the path crosses the triangle's plane. The plane is taken from the
 * record, of any scale and facing either side; it is never compared with the corners. Then the axis
 * of the normal's largest component is dropped (on a tie x before y before z), and h is tested in
 * the other two coordinates, p and q: against the rectangle around the corners, then by its
 * barycentric coordinates alpha and beta. With (hp, hq), (ep, eq) and (fp, fq) for h, the second
 * and the third corner, each minus the first:
 *
 *     ep equal to 0:  beta = hp/fp                     alpha = (hq - beta*fq)/eq
 *     otherwise:      beta = (hq*ep - eq*hp)/den       alpha = (hp - beta*fp)/ep
 *                     den = fq*ep - eq*fp
 *
 * Inside: beta from 0 to 1, alpha at or above 0, alpha + beta at or below 1. Edges and corners are
 * inside. h, the six differences and beta are singles; alpha, den and the sums are not.
 *
 * The tolerances are absolute. A path is parallel when its step times the normal is below
 * KX_TOLERANCE: with unit vectors, within a millionth of a radian. A triangle is not hit when
 * |den|, twice its projected area, is below KX_TOLERANCE: legs shorter than a thousandth. With ep
 * equal to 0 the same holds for |fp| and |eq|: legs shorter than a millionth. So a small triangle
 * may be hit with its corners in one order and missed in another.
 *
 * Where ep is small compared with fp, but not 0, the rounding of beta is divided by it, and rays at
 * the inside of the triangle miss. kx_triangle of everyday.h starts a triangle at the corner that
 * avoids this, kx_fit_mesh scales small meshes up, and docs/meshes-and-rays.md has figures and a
 * recipe.
 *
 * A start on the plane does not cross it.
 */
/** @{ */

/**
 * Whether a line hits a triangle of the host's mesh.
 *
 * With s and e its ends, delta = e - s, denom = a*delta.x + b*delta.y + c*delta.z and
 * dist = a*s.x + b*s.y + c*s.z + d, the line crosses the plane at h = delta*t + s with
 * t = -(dist/denom).
 *
 *     outcome                                                  result   point
 *     |denom| below KX_TOLERANCE; the start on the plane, or
 *     the line leads away from it; t above 1                     0      untouched
 *     h outside the triangle, or the triangle too small          0      h
 *     hit                                                        1      h
 *
 * - Aliasing: point must be apart from line, triangle and vertices.
 * - Degenerate: never hit are a plane of zeros, a line of no length, and a triangle with two equal
 *   corners. Other triangles of no area can be hit, since rounded differences may give them one.
 * - Rounding: delta, denom, dist and h are singles; t is not.
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
 * Whether a ray hits a triangle of the host's mesh: as KXLineIxTriangle, with the origin as s, the
 * direction as delta, and no limit on t.
 *
 *     outcome                                                  result   point
 *     |denom| below KX_TOLERANCE; the origin on the plane, or
 *     the ray leads away from it                                 0      untouched
 *     h outside the triangle, or the triangle too small          0      h
 *     hit                                                        1      h
 *
 * - Aliasing: point must be apart from ray, triangle and vertices.
 * - Degenerate: as for KXLineIxTriangle; a direction of 0 never hits.
 * - Rounding: denom, dist and h are singles; t is not.
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
 * Plane through three points, with a unit normal. Seen from the side the normal points to, first,
 * second, third run counter-clockwise.
 *
 * With A = second - first, B = third - second, N = A x B, S its squared length and f = 1/sqrt(S):
 *
 *     a = N.x*f   b = N.y*f   c = N.z*f   d = -(a*second.x + b*second.y + c*second.z)
 *
 * There are two attempts: the first counts when S is above KX_TOLERANCE; the second, with more
 * bits, when its S is above 1e-16. So triangles with legs down to about 1e-4 have a plane. d is a
 * negation: where it is 0 it may be -0.
 *
 * - Aliasing: first, second and third may be one record, two of them or all; out must not be part
 *   of one.
 * - On status 1: the points are equal, on one line, or too close to each other; out is the plane 1,
 *   0, 0, -second.x, through the second point.
 * - Rounding: A and B are singles. In the first attempt so are N, and a and b in d, but not c; in
 *   the second nothing else is rounded.
 *
 * @param[in]  first   a point, in the caller's length unit
 * @param[in]  second  another; the plane passes through it with either status
 * @param[in]  third   another
 * @param[out] out     the plane; written with either status
 * @return 0 for done, 1 when the points define no plane
 */
KX_API int32_t KXPlaneEquation(const KXP3 *first, const KXP3 *second, const KXP3 *third,
                               KXPlane *out);

/**
 * Rotates a point about an axis through the origin, right-handed: about Z a positive angle takes +X
 * towards +Y. The point moves in the plane perpendicular to the axis.
 *
 * With x, y, z the axis, C the cosine, s the sine and t = 1 - C, the matrix applied is
 *
 *     x*x + (1 - x*x)*C    x*y*t - z*s          x*z*t + y*s
 *     x*y*t + z*s          y*y + (1 - y*y)*C    y*z*t - x*s
 *     x*z*t - y*s          y*z*t + x*s          z*z + (1 - z*z)*C
 *
 * Small sines and cosines are kept, unlike in KXM4Orientation.
 *
 * - Aliasing: axis may be point.
 * - Degenerate: the axis is not normalised; of another length it gives another matrix, which is no
 *   rotation. An axis of 0 multiplies the point by the cosine.
 * - Rounding: singles are C, y*y, z*z, x*y*t, x*z*t (and x*z before it is multiplied by t), y*z*t,
 *   y*s and z*s.
 *
 * @param[in,out] point  the point, in the caller's length unit
 * @param[in]     axis   the axis, a unit vector
 * @param[in]     angle  the angle, in radians
 */
KX_API void KXRotateInPlane(KXP3 *point, const KXV3 *axis, float angle);

/** @} */

KX_END_DECLARATIONS

#endif
