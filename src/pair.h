/*
 * Two doubles side by side, for code that does the same to neighbouring values.
 *
 * Every operation acts on either value just as it would on a lone double, so a formula has the same
 * bits in pairs as one by one. What it buys is half the instructions, and more than half of those
 * that widen and round, which cost most.
 *
 * On x86 a pair is a register. g++ 12 drops roundings of float vectors that are put together from
 * elements, so the conversions are the processor's own. Values change places as integers do, since
 * Intel's processors have two units for that, and one for the same instruction on doubles.
 * Elsewhere a pair is a struct.
 *
 * Everything is static: a copy that was compiled for one instruction set must never be linked into
 * another's place.
 */
#ifndef KX_PAIR_H
#define KX_PAIR_H

#include "numeric.h"

#if defined(__GNUC__) && defined(__SSE2__) && !defined(KX_PLAIN)
#include "pair/sse2.h"
#else
#include "pair/plain.h"
#endif

namespace kx
{

static inline Pair both(double value)
{
    return pair(value, value);
}

static inline Pair rounded(Pair p)
{
    return wide(single(p));
}

} // namespace kx

#endif
