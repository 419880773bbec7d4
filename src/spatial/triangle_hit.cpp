/*
 * Lines and rays against a triangle of the host's mesh. The first half finds where the path crosses
 * the triangle's plane; the second, which both share, works in the plane.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"

using kx::Wide3;

namespace
{

constexpr int32_t hit = 1;
constexpr int32_t miss = 0;

bool too_small(double value)
{
    return kx::magnitude(value) < kx::tolerance;
}

/** A point without the coordinate along which the plane's normal is largest. */
struct Projected {
    double p, q;
};

/** Which two coordinates are left. On a tie x is dropped before y, and y before z. */
struct Projection {
    float KXP3::*p;
    float KXP3::*q;

    Projected operator()(const KXP3 &point) const
    {
        return {kx::wide(point.*p), kx::wide(point.*q)};
    }
};

Projection projection_of(const KXPlane &plane)
{
    const double a = kx::magnitude(kx::wide(plane.a));
    const double b = kx::magnitude(kx::wide(plane.b));
    const double c = kx::magnitude(kx::wide(plane.c));
    if (a >= b && a >= c) {
        return {&KXP3::y, &KXP3::z};
    }
    if (b >= a && b >= c) {
        return {&KXP3::x, &KXP3::z};
    }
    return {&KXP3::x, &KXP3::y};
}

double lowest(double a, double b, double c)
{
    const double least = a < b ? a : b;
    return least < c ? least : c;
}

double highest(double a, double b, double c)
{
    const double most = a > b ? a : b;
    return most > c ? most : c;
}

bool outside_rectangle(const Projected &h, const Projected &k0, const Projected &k1,
                       const Projected &k2)
{
    return h.p < lowest(k0.p, k1.p, k2.p) || h.q < lowest(k0.q, k1.q, k2.q) ||
           h.p > highest(k0.p, k1.p, k2.p) || h.q > highest(k0.q, k1.q, k2.q);
}

/** The difference of two projected points, in singles. */
Projected from_to(const Projected &from, const Projected &to)
{
    return {kx::rounded(to.p - from.p), kx::rounded(to.q - from.q)};
}

bool out_of_range(double beta)
{
    return beta < 0.0 || beta > 1.0;
}

int32_t verdict(double alpha, double beta)
{
    return alpha < 0.0 || alpha + beta > 1.0 ? miss : hit;
}

/**
 * Whether a point of the plane lies in the triangle. With k0, k1, k2 the corners, alpha and beta
 * are its coordinates in h = k0 + alpha*(k1 - k0) + beta*(k2 - k0). Beta is single, alpha is not.
 */
int32_t point_in_triangle(const KXP3 &point, const KXTriangle &triangle, const KXP3 *vertices)
{
    const Projection project = projection_of(triangle.plane);
    const Projected at = project(point);
    const Projected k0 = project(vertices[triangle.corner[0].vertex]);
    const Projected k1 = project(vertices[triangle.corner[1].vertex]);
    const Projected k2 = project(vertices[triangle.corner[2].vertex]);
    if (outside_rectangle(at, k0, k1, k2)) {
        return miss;
    }

    const Projected h = from_to(k0, at);
    const Projected e = from_to(k0, k1);
    const Projected f = from_to(k0, k2);
    if (e.p == 0.0) {
        // The first edge runs along q alone, so p gives beta by itself. The tolerance looks at two
        // lengths here, and at an area below.
        if (too_small(f.p)) {
            return miss;
        }
        const double beta = kx::rounded(h.p / f.p);
        if (too_small(e.q) || out_of_range(beta)) {
            return miss;
        }
        return verdict((h.q - beta * f.q) / e.q, beta);
    }
    const double den = f.q * e.p - e.q * f.p;
    if (too_small(den)) {
        return miss;
    }
    const double beta = kx::rounded((h.q * e.p - e.q * h.p) / den);
    if (out_of_range(beta)) {
        return miss;
    }
    return verdict((h.p - beta * f.p) / e.p, beta);
}

/** Where a path crosses a plane; t is negative when it does not, in front of its start. */
double plane_crossing(const KXPlane &plane, const Wide3 &start, const Wide3 &step)
{
    constexpr double never = -1.0;
    const double a = kx::wide(plane.a), b = kx::wide(plane.b), c = kx::wide(plane.c);
    const double denom = kx::rounded(a * step.x + b * step.y + c * step.z);
    if (too_small(denom)) {
        return never;
    }
    const double dist = kx::rounded(a * start.x + b * start.y + c * start.z + kx::wide(plane.d));
    // Strictly towards the plane, from either side: a start on the plane does not cross it.
    if ((dist > 0.0 && denom < 0.0) || (dist < 0.0 && denom > 0.0)) {
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
