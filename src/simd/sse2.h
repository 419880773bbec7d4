/* Two doubles, and four floats, as registers of x86. */
#ifndef KX_SIMD_SSE2_H
#define KX_SIMD_SSE2_H

#include "numeric.h"

#if defined(__AVX__)
#include <immintrin.h>
#else
#include <emmintrin.h>
#endif

namespace kx
{

typedef __m128d Double2;
/** Two floats: the lower half of the register. */
typedef __m128 Float2;
struct Float4 {
    __m128 floats;
};

KX_INLINE Double2 lanes(double first, double second) { return _mm_setr_pd(first, second); }
KX_INLINE double low(Double2 p) { return _mm_cvtsd_f64(p); }
/** The low lane of a, then that of b. */
KX_INLINE Double2 unpack_low(Double2 a, Double2 b)
{
    return _mm_castsi128_pd(_mm_unpacklo_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
KX_INLINE Double2 unpack_high(Double2 a, Double2 b)
{
    return _mm_castsi128_pd(_mm_unpackhi_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
KX_INLINE Double2 swap_lanes(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 3, 2)));
}
KX_INLINE Double2 splat_low(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 1, 0)));
}
KX_INLINE Double2 splat_high(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(3, 2, 3, 2)));
}
KX_INLINE double high(Double2 p) { return low(splat_high(p)); }
/** The low lane of a and the high lane of b, or the reverse. */
KX_INLINE Double2 low_and_high(Double2 a, Double2 b) { return _mm_move_sd(b, a); }
KX_INLINE Double2 high_and_low(Double2 a, Double2 b) { return _mm_shuffle_pd(a, b, 1); }
KX_INLINE Double2 replace_low(double value, Double2 p)
{
    return low_and_high(lanes(value, value), p);
}

/** The greater of each value and 0; a NaN gives 0. */
KX_INLINE Double2 positive_part(Double2 p) { return _mm_max_pd(p, _mm_setzero_pd()); }
/** The lesser of each value and 0; a NaN stays one. */
KX_INLINE Double2 negative_part(Double2 p) { return _mm_min_pd(_mm_setzero_pd(), p); }
/** With the other sign where signs has -0, and as it is where that has 0. */
KX_INLINE Double2 change_signs(Double2 p, Double2 signs) { return _mm_xor_pd(p, signs); }
KX_INLINE Double2 negate(Double2 p) { return _mm_xor_pd(p, _mm_set1_pd(-0.0)); }

KX_INLINE Double2 negate_high(Double2 p) { return _mm_xor_pd(p, _mm_setr_pd(0.0, -0.0)); }
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
KX_INLINE Double2 flush_below(double bound, Double2 p)
{
    const Double2 size = _mm_andnot_pd(_mm_set1_pd(-0.0), p);
    return _mm_and_pd(p, _mm_cmpge_pd(size, _mm_set1_pd(bound)));
}
/** Whether the magnitude of any lane is above a bound. */
KX_INLINE bool any_above(double bound, Double2 p)
{
    const Double2 size = _mm_andnot_pd(_mm_set1_pd(-0.0), p);
    return _mm_movemask_pd(_mm_cmpgt_pd(size, _mm_set1_pd(bound))) != 0;
}
/**
 * Adds n quarter turns to angles, given their sines and cosines. Only the last two bits of n count,
 * as bits of a double: it is an integer to which 1.5*2^52 was added.
 */
KX_INLINE void add_quarter_turns(Double2 n, Double2 *sine, Double2 *cosine)
{
    const __m128i quarters = _mm_castpd_si128(n), one = _mm_set1_epi64x(1);
    const __m128i odd = _mm_sub_epi64(_mm_setzero_si128(), _mm_and_si128(quarters, one));
    const Double2 exchange = _mm_and_pd(_mm_xor_pd(*sine, *cosine), _mm_castsi128_pd(odd));
    const __m128i sine_bit = _mm_slli_epi64(quarters, 62);
    const __m128i cosine_bit = _mm_slli_epi64(_mm_add_epi64(quarters, one), 62);
    const Double2 sign = _mm_set1_pd(-0.0);
    const Double2 sine_sign = _mm_and_pd(_mm_castsi128_pd(sine_bit), sign);
    const Double2 cosine_sign = _mm_and_pd(_mm_castsi128_pd(cosine_bit), sign);
    *sine = _mm_xor_pd(_mm_xor_pd(*sine, exchange), sine_sign);
    *cosine = _mm_xor_pd(_mm_xor_pd(*cosine, exchange), cosine_sign);
}

/** The lower of each two; the second operand if they are equal, or one is NaN. */
KX_INLINE Double2 min(Double2 a, Double2 b) { return _mm_min_pd(a, b); }
/** The higher of each two; the second operand if they are equal, or one is NaN. */
KX_INLINE Double2 max(Double2 a, Double2 b) { return _mm_max_pd(a, b); }

#if defined(__FMA__)
KX_INLINE Double2 add_exact_product(Double2 a, Double2 b, Double2 c)
{
    return _mm_fmadd_pd(a, b, c);
}
KX_INLINE Double2 subtract_exact_product(Double2 c, Double2 a, Double2 b)
{
    return _mm_fnmadd_pd(a, b, c);
}
#endif

KX_INLINE Double2 widen(Float2 p) { return _mm_cvtps_pd(p); }
KX_INLINE Float2 narrow(Double2 p) { return _mm_cvtpd_ps(p); }

KX_INLINE Float2 lanes(float first, float second)
{
    return _mm_unpacklo_ps(_mm_set_ss(first), _mm_set_ss(second));
}
KX_INLINE Float2 min(Float2 a, Float2 b) { return _mm_min_ps(a, b); }
KX_INLINE Float2 max(Float2 a, Float2 b) { return _mm_max_ps(a, b); }
/** Whether either value is outside its closed interval. */
KX_INLINE bool any_outside(Float2 p, Float2 lowest, Float2 highest)
{
    return _mm_movemask_ps(_mm_or_ps(_mm_cmplt_ps(p, lowest), _mm_cmplt_ps(highest, p))) != 0;
}
/**
 * Subtractions rounded to single. The processor's subtraction of singles gives the same bits as one
 * in double: a double has more than twice the digits of a single, so its rounding never makes a tie
 * for the second rounding, and differences that are subnormal singles are exact.
 */
KX_INLINE Float2 subtract(Float2 a, Float2 b) { return _mm_sub_ps(a, b); }

KX_INLINE Float2 load_floats2(const float *from)
{
    return _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64 *>(from));
}
KX_INLINE Double2 load2(const float *from)
{
#if defined(__clang__)
    return widen(load_floats2(from));
#else
    // g++ would move the floats to a register first, and the conversion is then two operations.
    Double2 p;
    __asm__("%vcvtps2pd %1, %0" : "=x"(p) : "m"(*reinterpret_cast<const __m64 *>(from)));
    return p;
#endif
}
KX_INLINE void store(double *to, Double2 p) { _mm_storeu_pd(to, p); }
KX_INLINE void store(float *to, Float2 p) { _mm_storel_pi(reinterpret_cast<__m64 *>(to), p); }
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
KX_INLINE void store_columns(float *top, float *bottom, Float2 left, Float2 right)
{
    const __m128 rows = _mm_unpacklo_ps(left, right);
    _mm_storel_pi(reinterpret_cast<__m64 *>(top), rows);
    _mm_storeh_pi(reinterpret_cast<__m64 *>(bottom), rows);
}
KX_INLINE void store_column(float *top, float *bottom, Float2 column)
{
    *top = column[0];
    *bottom = column[1];
}

KX_INLINE Float4 load_floats4(const float *from) { return {_mm_loadu_ps(from)}; }
/**
 * Three floats and 0; the float that follows them isn't read. With a mask it would be one load, but
 * one that waits for stores to those floats to reach the cache.
 */
KX_INLINE Float4 load_floats3(const float *from)
{
    return {_mm_movelh_ps(load_floats2(from), _mm_load_ss(from + 2))};
}
KX_INLINE void store(float *to, Float4 v) { _mm_storeu_ps(to, v.floats); }
/** Lanes 0 and 1. */
KX_INLINE void store_low(float *to, Float4 v)
{
    _mm_storel_pi(reinterpret_cast<__m64 *>(to), v.floats);
}
/** Lanes 2 and 3. */
KX_INLINE void store_high(float *to, Float4 v)
{
    _mm_storeh_pi(reinterpret_cast<__m64 *>(to), v.floats);
}
/** The first three lanes; the float after them stays untouched. */
KX_INLINE void store3(float *to, Float4 v)
{
    _mm_storel_pi(reinterpret_cast<__m64 *>(to), v.floats);
    _mm_store_ss(to + 2, _mm_movehl_ps(v.floats, v.floats));
}
/** The same float in all lanes. */
KX_INLINE Float4 broadcast_floats4(const float *from) { return {_mm_set1_ps(*from)}; }
/** Sums and products of singles, rounded to single: the same bits as in double, rounded once. */
KX_INLINE Float4 operator+(Float4 a, Float4 b) { return {_mm_add_ps(a.floats, b.floats)}; }
KX_INLINE Float4 operator*(Float4 a, Float4 b) { return {_mm_mul_ps(a.floats, b.floats)}; }
/** Lanes 0 and 1 of a and b, or lanes 2 and 3, in turns. */
KX_INLINE Float4 interleave_low(Float4 a, Float4 b)
{
    return {_mm_unpacklo_ps(a.floats, b.floats)};
}
KX_INLINE Float4 interleave_high(Float4 a, Float4 b)
{
    return {_mm_unpackhi_ps(a.floats, b.floats)};
}
/** Two lanes of a and then two of b, by their numbers. */
template <int A, int B, int C, int D>
KX_INLINE Float4 shuffle(Float4 a, Float4 b)
{
    return {_mm_shuffle_ps(a.floats, b.floats, _MM_SHUFFLE(D, C, B, A))};
}
KX_INLINE Float2 low_half(Float4 v) { return v.floats; }
KX_INLINE Float2 high_half(Float4 v) { return _mm_movehl_ps(v.floats, v.floats); }
KX_INLINE Float4 join(Float2 low, Float2 high) { return {_mm_movelh_ps(low, high)}; }

} // namespace kx

#endif
