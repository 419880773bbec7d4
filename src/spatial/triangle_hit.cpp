/*
 * Lines and rays against a triangle of the host's mesh. The first half finds where the path crosses
 * the triangle's plane; the second, which both share, works in the plane.
 *
 * What is unpredictable is decided without a branch where that can be done: from which side a path
 * comes, which axis is dropped, on which side of the rectangle the point lies. A mispredicted
 * branch costs more than the arithmetic that it skips. The divisions stay after their guards, and
 * so does all that follows the rectangle, which most paths miss: to do it for every path, with the
 * operands of a division made harmless where it is guarded, is slower for hits and misses alike,
 * and quicker only where as many hit as miss.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"
#include "simd/two.h"

#include <stddef.h>

using namespace kx;

namespace
{

bool too_small(double value)
{
    return magnitude(value) < tolerance;
}

/**
 * Which two coordinates are left when the one along which the plane's normal is largest is dropped,
 * as indices, since a branch would be unpredictable. On a tie x is dropped before y, and y
 * before z.
 */
struct Projection {
    size_t p;
    size_t q;

    Float2 operator()(const KXP3 &point) const
    {
        const float *const coordinates = &point.x;
        return lanes(coordinates[p], coordinates[q]);
    }
};

/** Of a normal without NaN: whose magnitudes compare as their bits do. */
inline Projection projection_of(const KXPlane &plane)
{
    const uint32_t a = magnitude_bits(plane.a);
    const uint32_t b = magnitude_bits(plane.b);
    const uint32_t c = magnitude_bits(plane.c);
    const bool drops_x = a >= (b > c ? b : c);
    const bool drops_z = c > (a > b ? a : b);
    return {drops_x ? size_t{1} : size_t{0}, drops_z ? size_t{1} : size_t{2}};
}

bool out_of_range(double beta)
{
    return (beta < 0.0) | (beta > 1.0);
}

/** Whether a point with these barycentric coordinates lies in the triangle; beta is in range. */
int32_t outcome(double alpha, double beta)
{
    return ((alpha < 0.0) | (alpha + beta > 1.0)) ? miss : hit;
}

/**
 * Whether a point of the plane lies in the triangle with the corners k0, k1, k2: by its barycentric
 * coordinates alpha, of k1, and beta, of k2. In each of the two coordinates that are left, with h
 * the point, e = k1 and f = k2, all minus k0:
 *
 *     hp = alpha*ep + beta*fp
 *     hq = alpha*eq + beta*fq
 *
 * Beta is single, alpha is not.
 */
inline int32_t point_in_triangle(const KXP3 &point, const KXTriangle &triangle,
                                 const KXP3 *vertices)
{
    const Projection project = projection_of(triangle.plane);
    const Float2 at = project(point);
    const Float2 k0 = project(vertices[triangle.corner[0].vertex]);
    const Float2 k1 = project(vertices[triangle.corner[1].vertex]);
    const Float2 k2 = project(vertices[triangle.corner[2].vertex]);

    // The rectangle around the triangle: of all corners before anything is compared with it, so
    // that a NaN among them raises its flag.
    const Float2 lowest = min(min(k0, k1), k2);
    const Float2 highest = max(max(k0, k1), k2);
    if (any_outside(at, lowest, highest)) {
        return miss;
    }

    // In each pair p, then q.
    const Double2 h = widen(subtract(at, k0));
    const Double2 e = widen(subtract(k1, k0));
    const Double2 f = widen(subtract(k2, k0));
    const double ep = low(e);
    if (ep == 0.0) {
        // The first edge runs along q alone:
        //     beta = hp / fp,  alpha = (hq - beta*fq) / eq
        // The tolerance is for two lengths here, and for an area below.
        const double eq = high(e), fp = low(f);
        if (too_small(fp)) {
            return miss;
        }
        const double beta = round_to_single(low(h) / fp);
        if (too_small(eq) || out_of_range(beta)) {
            return miss;
        }
        return outcome((high(h) - beta * high(f)) / eq, beta);
    }

    //     beta = (hq*ep - eq*hp) / (fq*ep - eq*fp),  alpha = (hp - beta*fp) / ep
    // Side by side are fq*ep and fp*eq, and hq*ep and hp*eq; then divisor and dividend.
    const Double2 f_terms = swap_lanes(f) * e, h_terms = swap_lanes(h) * e;
    const Double2 areas = unpack_low(f_terms, h_terms) - unpack_high(f_terms, h_terms);
    const double den = low(areas);
    if (too_small(den)) {
        return miss;
    }
    const double beta = round_to_single(high(areas) / den);
    if (out_of_range(beta)) {
        return miss;
    }
    return outcome((low(h) - beta * low(f)) / ep, beta);
}

/** A start and a step from it; x and y, which take the same way, side by side. */
struct Path {
    Double2 start_xy, step_xy;
    double start_z, step_z;
};

/**
 * Whether a path crosses a plane ahead of its start, and if so, after how many steps. A NaN
 * never crosses, so that what follows has a plane without NaN.
 */
inline bool crosses(const KXPlane &plane, const Path &path, double *steps)
{
    const Double2 ab = load2(&plane.a), cd = load2(&plane.c);
    const double c = low(cd), d = high(cd);
    // a*x + b*y + c*z of the step, and then of the start, with + d
    const Double2 towards = ab * path.step_xy;
    const double denom = round_to_single(low(towards) + high(towards) + c * path.step_z);
    if (!(magnitude(denom) >= tolerance)) {
        return false;
    }
    const Double2 away = ab * path.start_xy;
    const double dist = round_to_single(low(away) + high(away) + c * path.start_z + d);
    // Strictly towards the plane, from either side: a start on the plane does not cross it.
    if (!(dist * sign(denom) < 0.0)) {
        return false;
    }
    *steps = -(dist / denom);
    return true;
}

inline void store_place(const Path &path, double steps, KXP3 *point)
{
    store(&point->x, narrow(path.step_xy * splat2(steps) + path.start_xy));
    point->z = narrow(path.step_z * steps + path.start_z);
}

} // namespace

int32_t KXLineIxTriangle(const KXLine *line, const KXTriangle *triangle, const KXP3 *vertices,
                         KXP3 *point)
{
    const Double2 start_xy = load2(&line->start.x);
    const double start_z = widen(line->start.z);
    const Path path = {start_xy, round_to_single(load2(&line->end.x) - start_xy), start_z,
                       round_to_single(widen(line->end.z) - start_z)};
    double steps = 0.0;
    if (!crosses(triangle->plane, path, &steps) || steps > 1.0) {
        return miss;
    }
    store_place(path, steps, point);
    return point_in_triangle(*point, *triangle, vertices);
}

int32_t KXRayIxTriangle(const KXRay *ray, const KXTriangle *triangle, const KXP3 *vertices,
                        KXP3 *point)
{
    const Path path = {load2(&ray->origin.x), load2(&ray->direction.x), widen(ray->origin.z),
                       widen(ray->direction.z)};
    double steps = 0.0;
    if (!crosses(triangle->plane, path, &steps)) {
        return miss;
    }
    store_place(path, steps, point);
    return point_in_triangle(*point, *triangle, vertices);
}
