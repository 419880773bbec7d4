/* Two doubles as a register of x86. */
#ifndef KX_SIMD_TWO_SSE2_H
#define KX_SIMD_TWO_SSE2_H

#include "numeric.h"

#include <emmintrin.h>

namespace kx
{

typedef __m128d Double2;
/** Two floats: the lower half of the register. */
typedef __m128 Float2;

static inline Double2 lanes(double first, double second)
{
    return _mm_setr_pd(first, second);
}
static inline double low(Double2 p)
{
    return _mm_cvtsd_f64(p);
}
/** The low lane of a, then that of b. */
static inline Double2 unpack_low(Double2 a, Double2 b)
{
    return _mm_castsi128_pd(_mm_unpacklo_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
static inline Double2 unpack_high(Double2 a, Double2 b)
{
    return _mm_castsi128_pd(_mm_unpackhi_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
static inline Double2 swap_lanes(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 3, 2)));
}
static inline Double2 splat_low(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 1, 0)));
}
static inline Double2 splat_high(Double2 p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(3, 2, 3, 2)));
}
static inline double high(Double2 p)
{
    return low(splat_high(p));
}
static inline Double2 replace_low(double value, Double2 p)
{
    return _mm_move_sd(p, _mm_setr_pd(value, value));
}

/** The greater of each value and 0; a NaN gives 0. */
static inline Double2 positive_part(Double2 p)
{
    return _mm_max_pd(p, _mm_setzero_pd());
}
/** The lesser of each value and 0; a NaN stays one. */
static inline Double2 negative_part(Double2 p)
{
    return _mm_min_pd(_mm_setzero_pd(), p);
}
static inline Double2 negate(Double2 p)
{
    return _mm_xor_pd(p, _mm_set1_pd(-0.0));
}

static inline Double2 negate_low(Double2 p)
{
    return _mm_xor_pd(p, _mm_setr_pd(-0.0, 0.0));
}
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
static inline Double2 flush_below(double bound, Double2 p)
{
    const Double2 size = _mm_andnot_pd(_mm_set1_pd(-0.0), p);
    return _mm_and_pd(p, _mm_cmpge_pd(size, _mm_set1_pd(bound)));
}

static inline Double2 widen(Float2 p)
{
    return _mm_cvtps_pd(p);
}
static inline Float2 narrow(Double2 p)
{
    return _mm_cvtpd_ps(p);
}

static inline Float2 lanes(float first, float second)
{
    return _mm_unpacklo_ps(_mm_set_ss(first), _mm_set_ss(second));
}
/** The lower of each two; the second where neither is, and for a NaN. */
static inline Float2 min(Float2 a, Float2 b)
{
    return _mm_min_ps(a, b);
}
/** The higher of each two; the second where neither is, and for a NaN. */
static inline Float2 max(Float2 a, Float2 b)
{
    return _mm_max_ps(a, b);
}
/** Whether either value lies outside its span, which the ends belong to. */
static inline bool any_outside(Float2 p, Float2 lowest, Float2 highest)
{
    return _mm_movemask_ps(_mm_or_ps(_mm_cmplt_ps(p, lowest), _mm_cmplt_ps(highest, p))) != 0;
}
/**
 * What subtractions in double round to single. The processor's subtraction of singles gives the
 * same bits: a double has more than twice the digits of a single, so that its rounding never makes
 * a tie for the second rounding, and differences that are subnormal singles are exact.
 */
static inline Float2 subtract(Float2 a, Float2 b)
{
    return _mm_sub_ps(a, b);
}

static inline Float2 load_floats2(const float *from)
{
    return _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64 *>(from));
}
static inline Double2 load2(const float *from)
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
static inline void store(float *to, Float2 p)
{
    _mm_storel_pi(reinterpret_cast<__m64 *>(to), p);
}
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
static inline void store_columns(float *top, float *bottom, Float2 left, Float2 right)
{
    const __m128 rows = _mm_unpacklo_ps(left, right);
    _mm_storel_pi(reinterpret_cast<__m64 *>(top), rows);
    _mm_storeh_pi(reinterpret_cast<__m64 *>(bottom), rows);
}
static inline void store_column(float *top, float *bottom, Float2 column)
{
    *top = column[0];
    *bottom = column[1];
}

} // namespace kx

#endif
