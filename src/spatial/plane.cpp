/* Planes: through three points, and a point turned in one. */
#include "kxmaths5/spatial.h"

#include "numeric.h"

using kx::Wide3;

namespace
{

Wide3 rounded_difference(const Wide3 &to, const Wide3 &from)
{
    return {kx::rounded(to.x - from.x), kx::rounded(to.y - from.y), kx::rounded(to.z - from.z)};
}

Wide3 cross(const Wide3 &a, const Wide3 &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double squared_length(const Wide3 &v)
{
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

/** The normal enters d as it is here; only what is stored is rounded. */
KXPlane plane_through(const Wide3 &point, const Wide3 &normal)
{
    const double d = -(normal.x * point.x + normal.y * point.y + normal.z * point.z);
    return {kx::single(normal.x), kx::single(normal.y), kx::single(normal.z), kx::single(d)};
}

} // namespace

int32_t KXPlaneEquation(const KXP3 *first, const KXP3 *second, const KXP3 *third, KXPlane *out)
{
    constexpr int32_t done = 0;
    constexpr int32_t no_plane = 1;

    const Wide3 through = kx::wide(*second);
    const Wide3 A = rounded_difference(through, kx::wide(*first));
    const Wide3 B = rounded_difference(kx::wide(*third), through);
    const Wide3 wide_normal = cross(A, B);

    // The squared lengths meet the thresholds. First with the normal in singles: a and b are single
    // before they enter d, c is not.
    const Wide3 N = {kx::rounded(wide_normal.x), kx::rounded(wide_normal.y),
                     kx::rounded(wide_normal.z)};
    const double S = squared_length(N);
    if (S > kx::tolerance) {
        const double f = 1.0 / kx::square_root(S);
        const double a = kx::rounded(N.x * f);
        const double b = kx::rounded(N.y * f);
        const double c = N.z * f;
        *out = plane_through(through, {a, b, c});
        return done;
    }

    // Then for small triangles, with nothing rounded on the way.
    const double wide_S = squared_length(wide_normal);
    if (wide_S > 1e-16) {
        const double f = 1.0 / kx::square_root(wide_S);
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
    const Wide3 p = kx::wide(*point);
    const Wide3 n = kx::wide(*axis);
    const double C = kx::rounded(kx::cosine(kx::wide(angle)));
    const double s = kx::sine(kx::wide(angle));
    const double t = 1.0 - C;

    // Which of these terms are single is part of the result: x*x and x*s are not.
    const double xx = n.x * n.x;
    const double yy = kx::rounded(n.y * n.y);
    const double zz = kx::rounded(n.z * n.z);
    const double xyt = kx::rounded(n.x * n.y * t);
    const double xzt = kx::rounded(kx::rounded(n.x * n.z) * t);
    const double yzt = kx::rounded(n.y * n.z * t);
    const double xs = n.x * s;
    const double ys = kx::rounded(n.y * s);
    const double zs = kx::rounded(n.z * s);

    *point = kx::single(Wide3{
        (xx + (1.0 - xx) * C) * p.x + (xyt - zs) * p.y + (xzt + ys) * p.z,
        (xyt + zs) * p.x + (yy + (1.0 - yy) * C) * p.y + (yzt - xs) * p.z,
        (xzt - ys) * p.x + (yzt + xs) * p.y + (zz + (1.0 - zz) * C) * p.z,
    });
}
