/* Range, bearing, elevation and azimuth. Y is up; azimuth runs from +Z towards +X. */
#include "kxmaths5/polar.h"

#include "numeric.h"

using kx::quarter_turn;
using kx::Wide3;

namespace
{

// Singles, widened: each lies a little off the true angle.
constexpr double three_quarter_turn = 4.71238899230957;
constexpr double whole_turn = 6.2831854820251465;

/** The point at a range, elevation and azimuth, before any rounding. */
Wide3 polar_to_point(double range, double elevation, double azimuth)
{
    return {
        range * kx::cosine(elevation) * kx::sine(azimuth),
        range * kx::sine(elevation),
        range * kx::cosine(elevation) * kx::cosine(azimuth),
    };
}

/** Azimuth of a step on the ground that is next to nothing along Z. */
double azimuth_across(double dx)
{
    if (dx > 0.0) {
        return quarter_turn;
    }
    return dx < 0.0 ? -quarter_turn : 0.0;
}

} // namespace

double KXRange(const KXP3 *first, const KXP3 *second)
{
    const double dx = kx::wide(first->x) - kx::wide(second->x);
    const double dz = kx::wide(first->z) - kx::wide(second->z);
    return kx::square_root(dz * dz + dx * dx);
}

double KXBearing(const KXP3 *first, const KXP3 *second)
{
    const double dx = kx::wide(first->x) - kx::wide(second->x);
    const double dz = kx::wide(first->z) - kx::wide(second->z);
    if (dz == 0.0) {
        return dx > 0.0 ? quarter_turn : three_quarter_turn;
    }
    const double bearing = kx::arctangent(dx, dz);
    return bearing < 0.0 ? bearing + whole_turn : bearing;
}

void KXREAToPoint(float range, float elevation, float azimuth, KXP3 *out)
{
    *out = kx::single(polar_to_point(kx::wide(range), kx::wide(elevation), kx::wide(azimuth)));
}

void KXEAToVector(float elevation, float azimuth, KXV3 *out)
{
    *out = kx::single(polar_to_point(1.0, kx::wide(elevation), kx::wide(azimuth)));
}

void KXPointsToREA(const KXP3 *from, const KXP3 *to, float *range, float *elevation, float *azimuth)
{
    const double dx = kx::rounded(kx::wide(to->x) - kx::wide(from->x));
    const double dy = kx::rounded(kx::wide(to->y) - kx::wide(from->y));
    const double dz = kx::rounded(kx::wide(to->z) - kx::wide(from->z));
    // Compared before it is rounded, divided by after.
    const double r = kx::square_root(dz * dz + dy * dy + dx * dx);
    double up = 0.0;
    double around = 0.0;
    if (!(r < kx::tolerance)) {
        up = kx::arcsine(dy / kx::rounded(r));
        around = kx::magnitude(dz) < kx::tolerance ? azimuth_across(dx) : kx::arctangent(dx, dz);
    }
    *range = kx::single(r);
    *elevation = kx::single(up);
    *azimuth = kx::single(around);
}

void KXVectorToEA(const KXV3 *vector, float *elevation, float *azimuth)
{
    const KXP3 origin = {0.0f, 0.0f, 0.0f};
    float range;
    KXPointsToREA(&origin, vector, &range, elevation, azimuth);
}
