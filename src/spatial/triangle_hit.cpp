/*
 * Lines and rays against a triangle of the host's mesh. The first half finds where the path crosses
 * the triangle's plane; the second, which both share, works in the plane.
 *
 * What chance decides is decided without a branch where that can be done: from which side a path
 * comes, which axis is dropped, on which side of the rectangle the point lies. A branch guessed
 * wrongly costs more than the arithmetic behind it. The divisions stay behind their guards.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"

#include <stddef.h>

using kx::Wide3;

namespace
{

constexpr int32_t hit = 1;
constexpr int32_t miss = 0;

bool too_small(double value)
{
    return kx::magnitude(value) < kx::tolerance;
}

/** A point without the coordinate along which the plane's normal is largest, as it is stored. */
struct Projected {
    float p, q;
};

/**
 * Which two coordinates are left, as indices: to pick them by a branch would be to guess. On a tie
 * x is dropped before y, and y before z.
 */
struct Projection {
    size_t p;
    size_t q;

    Projected operator()(const KXP3 &point) const
    {
        const float *const coordinates = &point.x;
        return {coordinates[p], coordinates[q]};
    }
};

/** Of a normal without NaN: whose magnitudes compare as their bits do. */
Projection projection_of(const KXPlane &plane)
{
    const uint32_t a = kx::magnitude_bits(plane.a);
    const uint32_t b = kx::magnitude_bits(plane.b);
    const uint32_t c = kx::magnitude_bits(plane.c);
    const bool drops_x = (a >= b) & (a >= c);
    const bool keeps_z = drops_x | ((b >= a) & (b >= c));
    return {drops_x ? size_t{1} : size_t{0}, keeps_z ? size_t{2} : size_t{1}};
}

/**
 * How many ends of the span of three coordinates another one is beyond: 0 inside and on the ends.
 * Floats compare as doubles do. A number, since of several conditions compilers make branches.
 */
int sides_outside(float h, float k0, float k1, float k2)
{
    const float least = k0 < k1 ? k0 : k1;
    const float most = k0 > k1 ? k0 : k1;
    const float lowest = least < k2 ? least : k2;
    const float highest = most > k2 ? most : k2;
    return (h < lowest) + (h > highest);
}

/** The difference of two coordinates, a single. */
double from_to(float from, float to)
{
    return kx::rounded(kx::wide(to) - kx::wide(from));
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
    const Projected at = project(point);
    const Projected k0 = project(vertices[triangle.corner[0].vertex]);
    const Projected k1 = project(vertices[triangle.corner[1].vertex]);
    const Projected k2 = project(vertices[triangle.corner[2].vertex]);
    // A NaN in q must not be compared when p has decided: only that would raise a flag.
    const int outside_p = sides_outside(at.p, k0.p, k1.p, k2.p);
    if ((kx::is_nan(at.q) || kx::is_nan(k0.q) || kx::is_nan(k1.q) || kx::is_nan(k2.q)) &&
        outside_p != 0) {
        return miss;
    }
    if (outside_p + sides_outside(at.q, k0.q, k1.q, k2.q) != 0) {
        return miss;
    }

    const double hp = from_to(k0.p, at.p), hq = from_to(k0.q, at.q);
    const double ep = from_to(k0.p, k1.p), eq = from_to(k0.q, k1.q);
    const double fp = from_to(k0.p, k2.p), fq = from_to(k0.q, k2.q);
    if (ep == 0.0) {
        // The first edge runs along q alone, so p gives beta by itself. The tolerance looks at two
        // lengths here, and at an area below.
        if (too_small(fp)) {
            return miss;
        }
        const double beta = kx::rounded(hp / fp);
        if (too_small(eq) || out_of_range(beta)) {
            return miss;
        }
        return verdict((hq - beta * fq) / eq, beta);
    }
    const double den = fq * ep - eq * fp;
    if (too_small(den)) {
        return miss;
    }
    const double beta = kx::rounded((hq * ep - eq * hp) / den);
    if (out_of_range(beta)) {
        return miss;
    }
    return verdict((hp - beta * fp) / ep, beta);
}

/** Where a path crosses a plane; t is negative when it does not, in front of its start. */
inline double plane_crossing(const KXPlane &plane, const Wide3 &start, const Wide3 &step)
{
    constexpr double never = -1.0;
    const double a = kx::wide(plane.a), b = kx::wide(plane.b), c = kx::wide(plane.c);
    const double denom = kx::rounded(a * step.x + b * step.y + c * step.z);
    // Nor does a NaN cross, so that what follows has a plane without NaN.
    if (!(kx::magnitude(denom) >= kx::tolerance)) {
        return never;
    }
    const double dist = kx::rounded(a * start.x + b * start.y + c * start.z + kx::wide(plane.d));
    // Strictly towards the plane, from either side: a start on the plane does not cross it.
    if (dist * kx::sign(denom) < 0.0) {
        return -(dist / denom);
    }
    return never;
}

KXP3 along(const Wide3 &start, const Wide3 &step, double t)
{
    return kx::single(Wide3{step.x * t + start.x, step.y * t + start.y, step.z * t + start.z});
}

} // namespace

int32_t KXLineIxTriangle(const KXLine *line, const KXTriangle *triangle, const KXP3 *vertices,
                         KXP3 *point)
{
    const Wide3 start = kx::wide(line->start);
    const Wide3 end = kx::wide(line->end);
    const Wide3 delta = {kx::rounded(end.x - start.x), kx::rounded(end.y - start.y),
                         kx::rounded(end.z - start.z)};
    const double t = plane_crossing(triangle->plane, start, delta);
    if (t < 0.0 || t > 1.0) {
        return miss;
    }
    *point = along(start, delta, t);
    return point_in_triangle(*point, *triangle, vertices);
}

int32_t KXRayIxTriangle(const KXRay *ray, const KXTriangle *triangle, const KXP3 *vertices,
                        KXP3 *point)
{
    const Wide3 origin = kx::wide(ray->origin);
    const Wide3 direction = kx::wide(ray->direction);
    const double t = plane_crossing(triangle->plane, origin, direction);
    if (t < 0.0) {
        return miss;
    }
    *point = along(origin, direction, t);
    return point_in_triangle(*point, *triangle, vertices);
}
