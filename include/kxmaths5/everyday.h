/**
 * @file
 * What every host writes again: what turns a mesh and its hits into what the intersection functions
 * want and leave out, dot products, quaternion algebra, cameras.
 *
 * All of it is `static inline`, in C99 that is good C++ too. kxmaths5.h leaves this header out,
 * since it needs the host's <math.h>; include it as well. In C, link with -lm.
 *
 * The rules are those of types.h: expressions run in double and are rounded once, where the result
 * is stored. Sums of products of two singles have the same bits with every compiler. Elsewhere a
 * compiler that fuses a multiplication with an addition may change the last bit of a double;
 * -ffp-contract=off prevents it.
 */
#ifndef KXMATHS5_EVERYDAY_H
#define KXMATHS5_EVERYDAY_H

#include "kxmaths5/foundations.h"
#include "kxmaths5/spatial.h"
#include "kxmaths5/types.h"

#include <math.h>

#if defined(__FAST_MATH__) || defined(_M_FP_FAST) ||                                               \
    (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error "fast maths drops roundings, signs of zero and NaN: the results would be wrong"
#endif

/** @cond */
/* The one narrowing: rounds to single, for storing. */
static inline float kx_detail_single(double value)
{
    return (float)value;
}

/* A point without the coordinate along which the plane's normal is largest, as KXRayIxTriangle sees
 * it: on a tie x is dropped before y, and y before z. */
static inline KXP2 kx_detail_project(const KXPlane *plane, const KXP3 *point)
{
    const float a = plane->a < 0.0f ? -plane->a : plane->a;
    const float b = plane->b < 0.0f ? -plane->b : plane->b;
    const float c = plane->c < 0.0f ? -plane->c : plane->c;
    const int drops_x = a >= b && a >= c;
    KXP2 projected;
    projected.x = drops_x ? point->y : point->x;
    projected.y = drops_x || b >= c ? point->z : point->y;
    return projected;
}

/* Twice the signed area of the parallelogram of two edges; each product is exact. */
static inline double kx_detail_area(KXP2 e, KXP2 f)
{
    return (double)f.y * (double)e.x - (double)e.y * (double)f.x;
}

/* The step from one point to another, in singles: one rounding, as of the difference in double. */
static inline KXP2 kx_detail_step(KXP2 from, KXP2 to)
{
    KXP2 step;
    step.x = to.x - from.x;
    step.y = to.y - from.y;
    return step;
}
/** @endcond */

/** @name Meshes for intersection
 * What the functions of spatial.h ask of a mesh: coordinates about the origin, large enough for
 * their absolute tolerances, and each triangle begun at the corner that loses the fewest bits. And
 * what they leave out: where on the path and where in the triangle a hit is.
 */
/** @{ */

/**
 * The scale and shift that bring a mesh into the range in which intersections serve best: its
 * middle to the origin, and its diagonal to 512 units or more, but less than 1024.
 *
 *     to:    x' = scale*x - scale*middle.x      from:  x = x'/scale + middle.x
 *
 * and likewise y and z. The scale is a power of two, so that it costs no bit of a coordinate. In
 * this range KX_TOLERANCE is about as small beside a coordinate as its own last bits are, and next
 * to no triangle is too small to be hit. Carry rays there with KXTransformRay, which makes their
 * directions unit length as well, and bring points of contact back.
 *
 * - Aliasing: the outputs must be apart from box and from each other.
 * - Null: to, from or both may be null; a null output is skipped. box must not be null.
 * - On status 1: the outputs stay untouched. The box has no extent, is inverted or not finite, or
 * is smaller than 6e-36.
 *
 * @param[in]  box   the box around the mesh, in the caller's length unit
 * @param[out] to    from the mesh's space into the range; or null
 * @param[out] from  the way back; or null
 * @return 0 for done, 1 where there is no such scale
 */
static inline int32_t kx_fit_mesh(const KXBox *box, KXM4 *to, KXM4 *from)
{
    const double x = (double)box->maximum.x - (double)box->minimum.x;
    const double y = (double)box->maximum.y - (double)box->minimum.y;
    const double z = (double)box->maximum.z - (double)box->minimum.z;
    const double diagonal = sqrt(x * x + y * y + z * z);
    /* The bounds keep the power of two and its reciprocal ordinary singles. */
    if (!(KXIsValidBox(box) && diagonal >= 6e-36 && diagonal < 1e39)) {
        return 1;
    }
    int exponent = 0;
    (void)frexp(diagonal, &exponent);
    const float scale = kx_detail_single(ldexp(1.0, 10 - exponent));
    const float back = kx_detail_single(ldexp(1.0, exponent - 10));
    KXP3 middle;
    KXBoxMidPoint(box, &middle);
    if (to) {
        const KXM4 matrix = {{{scale, 0.0f, 0.0f, -middle.x * scale},
                              {0.0f, scale, 0.0f, -middle.y * scale},
                              {0.0f, 0.0f, scale, -middle.z * scale},
                              {0.0f, 0.0f, 0.0f, 1.0f}}};
        *to = matrix;
    }
    if (from) {
        const KXM4 matrix = {{{back, 0.0f, 0.0f, middle.x},
                              {0.0f, back, 0.0f, middle.y},
                              {0.0f, 0.0f, back, middle.z},
                              {0.0f, 0.0f, 0.0f, 1.0f}}};
        *from = matrix;
    }
    return 0;
}

/**
 * The record of a triangle, made for KXLineIxTriangle and KXRayIxTriangle: the plane by
 * KXPlaneEquation, and the corners in the order in which the test is most exact.
 *
 * The test divides by ep, the first coordinate of the first edge in the projection that the plane
 * selects. Where ep is small beside the edge but not 0, as a quarter turn in singles leaves it, the
 * rounding of beta is divided by it, and rays at the triangle's inside miss. So the record begins
 * at the corner whose edge to the next has the largest |ep|, on a tie at the earlier one. The
 * corners keep their cyclic order, first, second, third, and the plane's normal its side.
 *
 * The words that are the host's own become 0; fill them in afterwards, by the corners' vertices.
 *
 * - Aliasing: out must be apart from vertices.
 * - Null: not allowed.
 * - On status 1: the triangle has no plane, or |den|, twice its area in that projection, is below
 *   KX_TOLERANCE: no path hits it. The record is written all the same.
 *
 * @param[in]  vertices  the mesh's vertices, packed: twelve bytes each
 * @param[in]  first     index of the first corner
 * @param[in]  second    index of the second corner
 * @param[in]  third     index of the third corner
 * @param[out] out       the record
 * @return 0 for done, 1 when the triangle is too small or too flat to be hit
 */
static inline int32_t kx_triangle(const KXP3 *vertices, uint32_t first, uint32_t second,
                                  uint32_t third, KXTriangle *out)
{
    const uint32_t corners[3] = {first, second, third};
    const KXTriangleCorner none = {0, 0, 0, 0};
    KXP2 at[3];
    float largest = -1.0f;
    int begin = 0, k;
    const int32_t status =
        KXPlaneEquation(&vertices[first], &vertices[second], &vertices[third], &out->plane);
    for (k = 0; k < 3; ++k) {
        at[k] = kx_detail_project(&out->plane, &vertices[corners[k]]);
    }
    for (k = 0; k < 3; ++k) {
        const float step = kx_detail_step(at[k], at[(k + 1) % 3]).x;
        const float ep = step < 0.0f ? -step : step;
        if (ep > largest) {
            largest = ep;
            begin = k;
        }
    }
    for (k = 0; k < 3; ++k) {
        out->corner[k] = none;
        out->corner[k].vertex = corners[(begin + k) % 3];
    }
    out->host = 0;
    {
        const KXP2 k0 = at[begin];
        const KXP2 e = kx_detail_step(k0, at[(begin + 1) % 3]);
        const KXP2 f = kx_detail_step(k0, at[(begin + 2) % 3]);
        const int can_be_hit = fabs(kx_detail_area(e, f)) >= (double)KX_TOLERANCE;
        return status == 0 && can_be_hit ? 0 : 1;
    }
}

/**
 * How far along a ray a point is: t of the point of the ray's line that is nearest to it, so that
 * origin + t*direction is the point, as near as singles have it. With a unit direction t is the
 * distance from the origin.
 *
 *     t = dot(point - origin, direction) / dot(direction, direction)
 *
 * - Null: not allowed.
 * - Degenerate: a direction of 0 gives 0.
 *
 * @param[in] ray    the ray
 * @param[in] point  a point on it, as KXRayIxBox or KXRayIxTriangle writes it
 * @return t, unrounded
 */
static inline double kx_ray_parameter(const KXRay *ray, const KXP3 *point)
{
    const KXP3 *const o = &ray->origin;
    const double x = (double)ray->direction.x;
    const double y = (double)ray->direction.y;
    const double z = (double)ray->direction.z;
    const double square = x * x + y * y + z * z;
    const double along = ((double)point->x - (double)o->x) * x +
                         ((double)point->y - (double)o->y) * y +
                         ((double)point->z - (double)o->z) * z;
    return square > 0.0 ? along / square : 0.0;
}

/**
 * How far along a line a point is: 0 at the start, 1 at the end.
 *
 *     t = dot(point - start, end - start) / dot(end - start, end - start)
 *
 * - Null: not allowed.
 * - Degenerate: a line of no length gives 0.
 *
 * @param[in] line   the line
 * @param[in] point  a point on it, as KXLineIxBox or KXLineIxTriangle writes it
 * @return t, unrounded
 */
static inline double kx_line_parameter(const KXLine *line, const KXP3 *point)
{
    const KXP3 *const s = &line->start;
    const double x = (double)line->end.x - (double)s->x;
    const double y = (double)line->end.y - (double)s->y;
    const double z = (double)line->end.z - (double)s->z;
    const double square = x * x + y * y + z * z;
    const double along = ((double)point->x - (double)s->x) * x +
                         ((double)point->y - (double)s->y) * y +
                         ((double)point->z - (double)s->z) * z;
    return square > 0.0 ? along / square : 0.0;
}

/**
 * The barycentric coordinates of a point of a triangle: how much of each corner is in it. They sum
 * to 1; what a host keeps for each corner, a normal, a colour, a place in a picture, is at the
 * point weights[0]*corner[0]'s + weights[1]*corner[1]'s + weights[2]*corner[2]'s.
 *
 * With hp, hq, ep, eq, fp, fq as KXRayIxTriangle has them, in the projection that it uses:
 *
 *     den = fq*ep - eq*fp
 *     weights[1] = (fq*hp - hq*fp)/den   weights[2] = (hq*ep - eq*hp)/den
 *     weights[0] = 1 - weights[1] - weights[2]
 *
 * A point on an edge may get a weight a little below 0, by rounding.
 *
 * - Aliasing: weights must be apart from all else.
 * - Null: not allowed.
 * - On status 1: den is 0, and weights stay untouched.
 *
 * @param[in]  triangle  the triangle; the weights follow the order of its corners
 * @param[in]  vertices  the mesh's vertices, packed: twelve bytes each
 * @param[in]  point     a point in the triangle's plane
 * @param[out] weights   the coordinates: three floats
 * @return 0 for done, 1 when the triangle has no area
 */
static inline int32_t kx_barycentric(const KXTriangle *triangle, const KXP3 *vertices,
                                     const KXP3 *point, float weights[3])
{
    const KXPlane *const plane = &triangle->plane;
    const KXP2 k0 = kx_detail_project(plane, &vertices[triangle->corner[0].vertex]);
    const KXP2 k1 = kx_detail_project(plane, &vertices[triangle->corner[1].vertex]);
    const KXP2 k2 = kx_detail_project(plane, &vertices[triangle->corner[2].vertex]);
    const KXP2 h = kx_detail_step(k0, kx_detail_project(plane, point));
    const KXP2 e = kx_detail_step(k0, k1);
    const KXP2 f = kx_detail_step(k0, k2);
    const double den = kx_detail_area(e, f);
    if (den == 0.0) {
        return 1;
    }
    {
        const double alpha = kx_detail_area(h, f) / den, beta = kx_detail_area(e, h) / den;
        weights[0] = kx_detail_single(1.0 - alpha - beta);
        weights[1] = kx_detail_single(alpha);
        weights[2] = kx_detail_single(beta);
    }
    return 0;
}

/** @} */

#endif
