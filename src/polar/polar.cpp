/* Range, bearing, elevation and azimuth. Y is up; azimuth runs from +Z towards +X. */
#include "kxmaths5/polar.h"

#include "numeric.h"

using namespace kx;

namespace
{

// Singles, widened: each is a little above the true angle.
constexpr double three_quarter_turn = 4.71238899230957;
constexpr double whole_turn = 6.2831854820251465;

/** The point at a range, elevation and azimuth, before any rounding. */
Xyz polar_to_point(double range, double elevation, double azimuth)
{
    return {
        range * cosine(elevation) * sine(azimuth),
        range * sine(elevation),
        range * cosine(elevation) * cosine(azimuth),
    };
}

/** Azimuth where the step along Z is almost 0. */
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
    const double dx = widen(first->x) - widen(second->x);
    const double dz = widen(first->z) - widen(second->z);
    return square_root(dz * dz + dx * dx);
}

double KXBearing(const KXP3 *first, const KXP3 *second)
{
    const double dx = widen(first->x) - widen(second->x);
    const double dz = widen(first->z) - widen(second->z);
    if (dz == 0.0) {
        return dx > 0.0 ? quarter_turn : three_quarter_turn;
    }
    const double bearing = arctangent(dx, dz);
    return bearing < 0.0 ? bearing + whole_turn : bearing;
}

void KXREAToPoint(float range, float elevation, float azimuth, KXP3 *out)
{
    *out = narrow(polar_to_point(widen(range), widen(elevation), widen(azimuth)));
}

void KXEAToVector(float elevation, float azimuth, KXV3 *out)
{
    *out = narrow(polar_to_point(1.0, widen(elevation), widen(azimuth)));
}

void KXPointsToREA(const KXP3 *from, const KXP3 *to, float *range, float *elevation, float *azimuth)
{
    const double dx = round_to_single(widen(to->x) - widen(from->x));
    const double dy = round_to_single(widen(to->y) - widen(from->y));
    const double dz = round_to_single(widen(to->z) - widen(from->z));
    // Compared before it is rounded, divided by after.
    const double r = square_root(dz * dz + dy * dy + dx * dx);
    double up = 0.0;
    double around = 0.0;
    if (!(r < tolerance)) {
        up = arcsine(dy / round_to_single(r));
        around = magnitude(dz) < tolerance ? azimuth_across(dx) : arctangent(dx, dz);
    }
    *range = narrow(r);
    *elevation = narrow(up);
    *azimuth = narrow(around);
}

void KXVectorToEA(const KXV3 *vector, float *elevation, float *azimuth)
{
    const KXP3 origin = {0.0f, 0.0f, 0.0f};
    float range;
    KXPointsToREA(&origin, vector, &range, elevation, azimuth);
}
