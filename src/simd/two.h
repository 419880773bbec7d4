/*
 * Two doubles side by side, for code that does the same to neighbouring values.
 *
 * Every operation acts on either lane just as it would on a lone double, so a formula has the same
 * bits in vectors as one by one. What it buys is half the instructions, and more than half of those
 * that widen and round, which cost most.
 *
 * On x86 a vector is a register. g++ 12 drops roundings of float vectors that are put together from
 * elements, so the conversions are the processor's own. Lanes are moved as integers, since Intel's
 * processors have two units for that, and one for the same instruction on doubles. Elsewhere a
 * vector is a struct.
 *
 * Everything is static: a copy that was compiled for one instruction set must never be linked into
 * another's place.
 */
#ifndef KX_SIMD_TWO_H
#define KX_SIMD_TWO_H

#include "numeric.h"

#if defined(__GNUC__) && defined(__SSE2__) && !defined(KX_PLAIN)
#include "simd/two_sse2.h"
#else
#include "simd/two_plain.h"
#endif

namespace kx
{

static inline Double2 splat2(double value)
{
    return lanes(value, value);
}

static inline Double2 round_to_single(Double2 p)
{
    return widen(narrow(p));
}

} // namespace kx

#endif
