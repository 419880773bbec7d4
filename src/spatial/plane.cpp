/* Planes through three points, and the rotation of a point about an axis. */
#include "kxmaths5/spatial.h"

#include "numeric.h"

using namespace kx;

namespace
{

Xyz rounded_difference(const Xyz &to, const Xyz &from)
{
    return {round_to_single(to.x - from.x), round_to_single(to.y - from.y),
            round_to_single(to.z - from.z)};
}

Xyz cross(const Xyz &a, const Xyz &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double squared_length(const Xyz &v)
{
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

/** The normal is used in d as it is here; only what is stored is rounded. */
KXPlane plane_through(const Xyz &point, const Xyz &normal)
{
    const double d = -(normal.x * point.x + normal.y * point.y + normal.z * point.z);
    return {narrow(normal.x), narrow(normal.y), narrow(normal.z), narrow(d)};
}

} // namespace

int32_t KXPlaneEquation(const KXP3 *first, const KXP3 *second, const KXP3 *third, KXPlane *out)
{
    const Xyz through = widen(*second);
    const Xyz A = rounded_difference(through, widen(*first));
    const Xyz B = rounded_difference(widen(*third), through);
    const Xyz wide_normal = cross(A, B);

    // The squared lengths are compared with the thresholds. First with the normal in singles: a and
    // b are singles in d, c is not.
    const Xyz N = {round_to_single(wide_normal.x), round_to_single(wide_normal.y),
                   round_to_single(wide_normal.z)};
    const double S = squared_length(N);
    if (S > tolerance) {
        const double f = 1.0 / square_root(S);
        const double a = round_to_single(N.x * f);
        const double b = round_to_single(N.y * f);
        const double c = N.z * f;
        *out = plane_through(through, {a, b, c});
        return done;
    }

    // Then for small triangles, with no intermediate rounded.
    const double wide_square = squared_length(wide_normal);
    if (wide_square > 1e-16) {
        const double f = 1.0 / square_root(wide_square);
        const double a = wide_normal.x * f;
        const double b = wide_normal.y * f;
        const double c = wide_normal.z * f;
        *out = plane_through(through, {a, b, c});
        return done;
    }

    *out = {1.0f, 0.0f, 0.0f, -second->x};
    return no_plane;
}

void KXRotateInPlane(KXP3 *point, const KXV3 *axis, float angle)
{
    const Xyz p = widen(*point);
    const Xyz n = widen(*axis);
    const double C = round_to_single(cosine(widen(angle)));
    const double s = sine(widen(angle));
    const double t = 1.0 - C;

    // Which of these terms are single is part of the contract: x*x and x*s are not.
    const double xx = n.x * n.x;
    const double yy = round_to_single(n.y * n.y);
    const double zz = round_to_single(n.z * n.z);
    const double xyt = round_to_single(n.x * n.y * t);
    const double xzt = round_to_single(round_to_single(n.x * n.z) * t);
    const double yzt = round_to_single(n.y * n.z * t);
    const double xs = n.x * s;
    const double ys = round_to_single(n.y * s);
    const double zs = round_to_single(n.z * s);

    *point = narrow(Xyz{
        (xx + (1.0 - xx) * C) * p.x + (xyt - zs) * p.y + (xzt + ys) * p.z,
        (xyt + zs) * p.x + (yy + (1.0 - yy) * C) * p.y + (yzt - xs) * p.z,
        (xzt - ys) * p.x + (yzt + xs) * p.y + (zz + (1.0 - zz) * C) * p.z,
    });
}
