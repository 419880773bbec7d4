/* Interpolation, and the difference of two tick readings. */
#include "kxmaths5/foundations.h"

#include "numeric.h"

using namespace kx;

double KXInterpolate(float x0, float y0, float x1, float y1, float x)
{
    const double from = widen(x0), to = widen(x1), at = widen(x);
    // In this order the tests also cover an empty or reversed interval: the division is not
    // reached.
    if (at <= from) {
        return widen(y0);
    }
    if (at >= to) {
        return widen(y1);
    }
    return (at - from) * (widen(y1) - widen(y0)) / (to - from) + widen(y0);
}

double KXDiffTime(uint32_t later, uint32_t earlier)
{
    // A product with the single 0.001: a quotient by 1000 has other bits. The conversion makes the
    // upper half of the differences negative.
    constexpr double scale = static_cast<double>(0.001f);
    return static_cast<double>(static_cast<int32_t>(later - earlier)) * scale;
}
