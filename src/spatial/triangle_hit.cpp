/*
 * Lines and rays against a triangle of the host's mesh. The first half finds where the path crosses
 * the triangle's plane; the second, which both share, works in the plane.
 *
 * What chance decides is decided without a branch where that can be done: from which side a path
 * comes, which axis is dropped, on which side of the rectangle the point lies. A branch guessed
 * wrongly costs more than the arithmetic behind it. The divisions stay behind their guards, and so
 * does all that follows the rectangle, which most paths miss: to do it for every path, with the
 * operands of a division made harmless where it is guarded, is slower for hits and misses alike,
 * and quicker only where as many hit as miss.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"
#include "pair.h"

#include <stddef.h>

using kx::first;
using kx::Pair;
using kx::PairOfSingles;
using kx::second;

namespace
{

constexpr int32_t hit = 1;
constexpr int32_t miss = 0;

bool too_small(double value)
{
    return kx::magnitude(value) < kx::tolerance;
}

/**
 * Which two coordinates are left when the one along which the plane's normal is largest is dropped,
 * as indices: to pick them by a branch would be to guess. On a tie x is dropped before y, and y
 * before z.
 */
struct Projection {
    size_t p;
    size_t q;

    PairOfSingles operator()(const KXP3 &point) const
    {
        const float *const coordinates = &point.x;
        return kx::pair_of_singles(coordinates[p], coordinates[q]);
    }
};

/** Of a normal without NaN: whose magnitudes compare as their bits do. */
inline Projection projection_of(const KXPlane &plane)
{
    const uint32_t a = kx::magnitude_bits(plane.a);
    const uint32_t b = kx::magnitude_bits(plane.b);
    const uint32_t c = kx::magnitude_bits(plane.c);
    const bool drops_x = a >= (b > c ? b : c);
    const bool drops_z = c > (a > b ? a : b);
    return {drops_x ? size_t{1} : size_t{0}, drops_z ? size_t{1} : size_t{2}};
}

bool out_of_range(double beta)
{
    return (beta < 0.0) | (beta > 1.0);
}

int32_t verdict(double alpha, double beta)
{
    return ((alpha < 0.0) | (alpha + beta > 1.0)) ? miss : hit;
}

/**
 * Whether a point of the plane lies in the triangle. With k0, k1, k2 the corners, alpha and beta
 * are its coordinates in h = k0 + alpha*(k1 - k0) + beta*(k2 - k0). Beta is single, alpha is not.
 */
inline int32_t point_in_triangle(const KXP3 &point, const KXTriangle &triangle,
                                 const KXP3 *vertices)
{
    const Projection project = projection_of(triangle.plane);
    const PairOfSingles at = project(point);
    const PairOfSingles k0 = project(vertices[triangle.corner[0].vertex]);
    const PairOfSingles k1 = project(vertices[triangle.corner[1].vertex]);
    const PairOfSingles k2 = project(vertices[triangle.corner[2].vertex]);
    // Of all corners before anything is compared with them, so that a NaN among them raises its
    // flag.
    const PairOfSingles lowest = kx::lesser(kx::lesser(k0, k1), k2);
    const PairOfSingles highest = kx::greater(kx::greater(k0, k1), k2);
    if (kx::any_outside(at, lowest, highest)) {
        return miss;
    }

    const Pair h = kx::wide(kx::difference(at, k0));
    const Pair e = kx::wide(kx::difference(k1, k0));
    const Pair f = kx::wide(kx::difference(k2, k0));
    const double ep = first(e);
    if (ep == 0.0) {
        // The first edge runs along q alone, so p gives beta by itself. The tolerance looks at two
        // lengths here, and at an area below.
        const double eq = second(e), fp = first(f);
        if (too_small(fp)) {
            return miss;
        }
        const double beta = kx::rounded(first(h) / fp);
        if (too_small(eq) || out_of_range(beta)) {
            return miss;
        }
        return verdict((second(h) - beta * second(f)) / eq, beta);
    }
    // fq*ep - eq*fp and hq*ep - eq*hp, side by side.
    const Pair f_terms = kx::swapped(f) * e, h_terms = kx::swapped(h) * e;
    const Pair areas = kx::firsts(f_terms, h_terms) - kx::seconds(f_terms, h_terms);
    const double den = first(areas);
    if (too_small(den)) {
        return miss;
    }
    const double beta = kx::rounded(second(areas) / den);
    if (out_of_range(beta)) {
        return miss;
    }
    return verdict((first(h) - beta * first(f)) / ep, beta);
}

/** A start and a step from it; x and y, which take the same way, side by side. */
struct Path {
    Pair start_xy, step_xy;
    double start_z, step_z;
};

/**
 * Whether a path crosses a plane in front of its start, and if so, after how many steps. A NaN
 * never crosses, so that what follows has a plane without NaN.
 */
inline bool crosses(const KXPlane &plane, const Path &path, double *steps)
{
    const Pair ab = kx::load(&plane.a), cd = kx::load(&plane.c);
    const double c = first(cd), d = second(cd);
    const Pair towards = ab * path.step_xy;
    const double denom = kx::rounded(first(towards) + second(towards) + c * path.step_z);
    if (!(kx::magnitude(denom) >= kx::tolerance)) {
        return false;
    }
    const Pair away = ab * path.start_xy;
    const double dist = kx::rounded(first(away) + second(away) + c * path.start_z + d);
    // Strictly towards the plane, from either side: a start on the plane does not cross it.
    if (!(dist * kx::sign(denom) < 0.0)) {
        return false;
    }
    *steps = -(dist / denom);
    return true;
}

inline void store_place(const Path &path, double steps, KXP3 *point)
{
    kx::store(&point->x, kx::single(path.step_xy * kx::both(steps) + path.start_xy));
    point->z = kx::single(path.step_z * steps + path.start_z);
}

} // namespace

int32_t KXLineIxTriangle(const KXLine *line, const KXTriangle *triangle, const KXP3 *vertices,
                         KXP3 *point)
{
    const Pair start_xy = kx::load(&line->start.x);
    const double start_z = kx::wide(line->start.z);
    const Path path = {start_xy, kx::rounded(kx::load(&line->end.x) - start_xy), start_z,
                       kx::rounded(kx::wide(line->end.z) - start_z)};
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
    const Path path = {kx::load(&ray->origin.x), kx::load(&ray->direction.x),
                       kx::wide(ray->origin.z), kx::wide(ray->direction.z)};
    double steps = 0.0;
    if (!crosses(triangle->plane, path, &steps)) {
        return miss;
    }
    store_place(path, steps, point);
    return point_in_triangle(*point, *triangle, vertices);
}
