/*
 * Two doubles next to each other, for code that does the same to neighbouring values.
 *
 * Every operation treats each lane as it would a lone double, so a formula has the same bits in
 * vectors as in scalars. It takes half the instructions, and fewer than half of those that widen
 * and round, which cost most.
 *
 * On x86 a vector is a register. g++ 12 drops roundings of float vectors that are built from
 * elements, so the conversions are the processor's own. Lanes are moved as integers, since Intel's
 * processors have two units for that, and one for the same instruction on doubles. Elsewhere a
 * vector is a struct.
 *
 * Everything is static: the linker must never take a copy that was compiled for one instruction set
 * for another's.
 */
#ifndef KX_SIMD_TWO_H
#define KX_SIMD_TWO_H

#include "numeric.h"

/* Vectors are to stay in registers; g++ would otherwise call a function that has a few of them. But
 * without optimisation WebAssembly has no room for the variables of all in one function. */
#if defined(__GNUC__) && (defined(__OPTIMIZE__) || !defined(__wasm__))
#define KX_INLINE __attribute__((always_inline)) static inline
#define KX_INLINE_MEMBER __attribute__((always_inline)) inline
#else
#define KX_INLINE static inline
#define KX_INLINE_MEMBER inline
#endif

#if defined(__GNUC__) && defined(__SSE2__) && !defined(KX_PLAIN)
#include "simd/sse2.h"
#else
#include "simd/plain.h"
#endif

namespace kx
{

KX_INLINE Double2 splat2(double value) { return lanes(value, value); }

KX_INLINE Double2 round_to_single(Double2 p) { return widen(narrow(p)); }

/**
 * a*b + c, only where every a and b is a single widened: such a product is exact in double, so that
 * the sum is rounded once, to the same bits, whether the two operations are fused or not. They are
 * in the functions for registers, which go before these.
 */
template <typename V>
KX_INLINE V add_exact_product(V a, V b, V c)
{
    return a * b + c;
}
/** c - a*b, likewise. */
template <typename V>
KX_INLINE V subtract_exact_product(V c, V a, V b)
{
    return c - a * b;
}

/** Four columns as four rows, or the reverse. */
KX_INLINE void transpose(Float4 &a, Float4 &b, Float4 &c, Float4 &d)
{
    const Float4 ab_low = interleave_low(a, b), ab_high = interleave_high(a, b);
    const Float4 cd_low = interleave_low(c, d), cd_high = interleave_high(c, d);
    a = shuffle<0, 1, 0, 1>(ab_low, cd_low);
    b = shuffle<2, 3, 2, 3>(ab_low, cd_low);
    c = shuffle<0, 1, 0, 1>(ab_high, cd_high);
    d = shuffle<2, 3, 2, 3>(ab_high, cd_high);
}

/** Three rows as four columns, whose last lane is that of the third row again. */
KX_INLINE void columns_of_rows(Float4 row0, Float4 row1, Float4 row2, Float4 (&columns)[4])
{
    const Float4 low = interleave_low(row0, row1), high = interleave_high(row0, row1);
    columns[0] = shuffle<0, 1, 0, 0>(low, row2);
    columns[1] = shuffle<2, 3, 1, 1>(low, row2);
    columns[2] = shuffle<0, 1, 2, 2>(high, row2);
    columns[3] = shuffle<2, 3, 3, 3>(high, row2);
}

/** Three rows from their four columns, of which the last lane isn't stored. */
KX_INLINE void store_columns(float *row0, float *row1, float *row2, Float4 a, Float4 b, Float4 c,
                             Float4 d)
{
    const Float4 ab = interleave_low(a, b), cd = interleave_low(c, d);
    store_low(row0, ab);
    store_low(row0 + 2, cd);
    store_high(row1, ab);
    store_high(row1 + 2, cd);
    store_low(row2, interleave_high(a, b));
    store_low(row2 + 2, interleave_high(c, d));
}

} // namespace kx

#endif
