/* Bit scans of a 32-bit word, interpolation, and the difference of two tick readings. */
#include "kxmaths5/foundations.h"

#include "numeric.h"

using namespace kx;

// Plain arithmetic: a compiler's own bit count may bring a table along.
uint32_t KXBitCount(uint32_t v)
{
    // Counts of pairs of bits, then of groups of four, then of bytes, which the product adds up in
    // its highest byte.
    v = v - ((v >> 1) & 0x55555555U);
    v = (v & 0x33333333U) + ((v >> 2) & 0x33333333U);
    v = (v + (v >> 4)) & 0x0f0f0f0fU;
    return (v * 0x01010101U) >> 24;
}

uint32_t KXLSB(uint32_t v)
{
    // The bits below the lowest one; without any, all 32.
    return KXBitCount(~v & (v - 1U));
}

uint32_t KXMSB(uint32_t v)
{
    // The highest bit and all below it, without bit 0: none of them for 0 and for 1.
    v |= v >> 1;
    v |= v >> 2;
    v |= v >> 4;
    v |= v >> 8;
    v |= v >> 16;
    return KXBitCount(v >> 1);
}

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
