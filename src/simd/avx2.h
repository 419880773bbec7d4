/* Four doubles as a register of AVX2. */
#ifndef KX_SIMD_AVX2_H
#define KX_SIMD_AVX2_H

#include "simd/two.h"

#include <immintrin.h>

namespace kx
{

typedef __m256d Double4;
constexpr bool four_fit_a_register = true;

KX_INLINE Double4 lanes(double a, double b, double c, double d)
{
    return _mm256_setr_pd(a, b, c, d);
}
KX_INLINE Double4 splat4(double value) { return _mm256_set1_pd(value); }
KX_INLINE double low(Double4 v) { return _mm256_cvtsd_f64(v); }
KX_INLINE Double2 low_half(Double4 v) { return _mm256_castpd256_pd128(v); }
KX_INLINE Double2 high_half(Double4 v) { return _mm256_extractf128_pd(v, 1); }
KX_INLINE Double4 join(Double2 low, Double2 high) { return _mm256_set_m128d(high, low); }

/** With no particular values in lanes 2 and 3. */
KX_INLINE Double4 in_low_half(Double2 v) { return _mm256_castpd128_pd256(v); }
/** Of a vector whose lanes are alike. */
KX_INLINE Double4 twice(Double2 v) { return _mm256_broadcastsd_pd(v); }

/** The lanes with those numbers. */
template <int A, int B, int C, int D>
KX_INLINE Double4 permute(Double4 v)
{
    return _mm256_permute4x64_pd(v, _MM_SHUFFLE(D, C, B, A));
}
/** The same of two vectors, with the lanes of the second numbered from 4 on. */
template <int A, int B, int C, int D>
KX_INLINE Double4 permute(Double4 v, Double4 w)
{
#if defined(__AVX512VL__)
    return _mm256_permutex2var_pd(v, _mm256_setr_epi64x(A, B, C, D), w);
#else
    constexpr int from_w = (A > 3 ? 1 : 0) + (B > 3 ? 2 : 0) + (C > 3 ? 4 : 0) + (D > 3 ? 8 : 0);
    const Double4 of_v = permute<A & 3, B & 3, C & 3, D & 3>(v);
    const Double4 of_w = permute<A & 3, B & 3, C & 3, D & 3>(w);
    return _mm256_blend_pd(of_v, of_w, from_w);
#endif
}
/** The even lanes of a and b in turns, or the odd ones: in each half what it does to two lanes. */
KX_INLINE Double4 unpack_low(Double4 a, Double4 b)
{
    return _mm256_castsi256_pd(
        _mm256_unpacklo_epi64(_mm256_castpd_si256(a), _mm256_castpd_si256(b)));
}
KX_INLINE Double4 unpack_high(Double4 a, Double4 b)
{
    return _mm256_castsi256_pd(
        _mm256_unpackhi_epi64(_mm256_castpd_si256(a), _mm256_castpd_si256(b)));
}
/** The low half of a and then that of b, or the high halves. */
KX_INLINE Double4 join_low(Double4 a, Double4 b) { return _mm256_permute2f128_pd(a, b, 0x20); }
KX_INLINE Double4 join_high(Double4 a, Double4 b) { return _mm256_permute2f128_pd(a, b, 0x31); }
/** Lane 0 of the first, and the others of the second. */
KX_INLINE Double4 replace_lane0(double value, Double4 v)
{
    return _mm256_blend_pd(v, _mm256_castpd128_pd256(_mm_set_sd(value)), 1);
}

/** With lane 0 rounded to single. */
KX_INLINE Double4 round_lane0(Double4 v)
{
    const Float2 rounded = _mm_cvtsd_ss(_mm_setzero_ps(), low_half(v));
    return _mm256_blend_pd(v, in_low_half(_mm_cvtss_sd(low_half(v), rounded)), 1);
}

/** All bits where the sign bit is set. */
KX_INLINE Double4 negative_mask(Double4 v)
{
#if defined(__AVX512VL__)
    return _mm256_castsi256_pd(_mm256_srai_epi64(_mm256_castpd_si256(v), 63));
#else
    const __m256i signs = _mm256_srai_epi32(_mm256_castpd_si256(v), 31);
    return _mm256_castsi256_pd(_mm256_shuffle_epi32(signs, _MM_SHUFFLE(3, 3, 1, 1)));
#endif
}
/** Each value whose sign bit is clear, and 0 for the others. */
KX_INLINE Double4 positive_part(Double4 v) { return _mm256_andnot_pd(negative_mask(v), v); }
/** Each value whose sign bit is set, and 0 for the others. */
KX_INLINE Double4 negative_part(Double4 v) { return _mm256_and_pd(negative_mask(v), v); }
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
KX_INLINE Double4 flush_below(double bound, Double4 v)
{
    const Double4 size = _mm256_andnot_pd(_mm256_set1_pd(-0.0), v);
    return _mm256_and_pd(v, _mm256_cmp_pd(size, _mm256_set1_pd(bound), _CMP_GE_OS));
}
/** Whether the magnitude of any lane is above a bound. */
KX_INLINE bool any_above(double bound, Double4 v)
{
    const Double4 size = _mm256_andnot_pd(_mm256_set1_pd(-0.0), v);
    return _mm256_movemask_pd(_mm256_cmp_pd(size, _mm256_set1_pd(bound), _CMP_GT_OS)) != 0;
}
/** Adds n quarter turns to angles, as with two lanes. */
KX_INLINE void add_quarter_turns(Double4 n, Double4 *sine, Double4 *cosine)
{
    const __m256i quarters = _mm256_castpd_si256(n), one = _mm256_set1_epi64x(1);
    const __m256i odd = _mm256_sub_epi64(_mm256_setzero_si256(), _mm256_and_si256(quarters, one));
    const Double4 exchange = _mm256_and_pd(_mm256_xor_pd(*sine, *cosine), _mm256_castsi256_pd(odd));
    const __m256i sine_bit = _mm256_slli_epi64(quarters, 62);
    const __m256i cosine_bit = _mm256_slli_epi64(_mm256_add_epi64(quarters, one), 62);
    const Double4 sign = _mm256_set1_pd(-0.0);
    const Double4 sine_sign = _mm256_and_pd(_mm256_castsi256_pd(sine_bit), sign);
    const Double4 cosine_sign = _mm256_and_pd(_mm256_castsi256_pd(cosine_bit), sign);
    *sine = _mm256_xor_pd(_mm256_xor_pd(*sine, exchange), sine_sign);
    *cosine = _mm256_xor_pd(_mm256_xor_pd(*cosine, exchange), cosine_sign);
}
/** The lower of each two; the second operand if they are equal, or one is NaN. */
KX_INLINE Double4 min(Double4 a, Double4 b) { return _mm256_min_pd(a, b); }
/** The higher of each two; the second operand if they are equal, or one is NaN. */
KX_INLINE Double4 max(Double4 a, Double4 b) { return _mm256_max_pd(a, b); }
/** With the other sign where signs has -0, and as it is where that has 0. */
KX_INLINE Double4 change_signs(Double4 v, Double4 signs) { return _mm256_xor_pd(v, signs); }

KX_INLINE Double4 add_exact_product(Double4 a, Double4 b, Double4 c)
{
    return _mm256_fmadd_pd(a, b, c);
}
KX_INLINE Double4 subtract_exact_product(Double4 c, Double4 a, Double4 b)
{
    return _mm256_fnmadd_pd(a, b, c);
}
#if defined(__AVX512F__)
KX_INLINE __m512d add_exact_product(__m512d a, __m512d b, __m512d c)
{
    return _mm512_fmadd_pd(a, b, c);
}
#endif

KX_INLINE Double4 widen(Float4 v) { return _mm256_cvtps_pd(v.floats); }
KX_INLINE Float4 narrow(Double4 v) { return {_mm256_cvtpd_ps(v)}; }
KX_INLINE Double4 round_to_single(Double4 v) { return widen(narrow(v)); }

KX_INLINE void store(double *to, Double4 v) { _mm256_storeu_pd(to, v); }
/** Four floats, widened. From memory a conversion is one operation; g++ would make it two. */
KX_INLINE Double4 load4(const float *from)
{
#if defined(__clang__)
    return widen(load_floats4(from));
#else
    Double4 v;
    __asm__("vcvtps2pd %1, %0" : "=x"(v) : "m"(*reinterpret_cast<const float(*)[4]>(from)));
    return v;
#endif
}
/** Three floats, widened, and 0; the float after them is not read. */
KX_INLINE Double4 load3(const float *from) { return widen(load_floats3(from)); }
/** One float, widened, in all lanes. */
KX_INLINE Double4 broadcast4(const float *from)
{
#if defined(__AVX512VL__) && !defined(__clang__)
    Double4 v;
    __asm__("vcvtps2pd %1%{1to4%}, %0" : "=x"(v) : "m"(*from));
    return v;
#else
    return _mm256_cvtps_pd(_mm_broadcast_ss(from));
#endif
}

/** One double in all lanes. */
KX_INLINE Double4 broadcast4(const double *from) { return _mm256_set1_pd(*from); }

/** Four rows from their columns, rounded. */
KX_INLINE void store_columns(float *row0, float *row1, float *row2, float *row3, Double4 a,
                             Double4 b, Double4 c, Double4 d)
{
    Float4 rows[4] = {narrow(a), narrow(b), narrow(c), narrow(d)};
    transpose(rows[0], rows[1], rows[2], rows[3]);
    store(row0, rows[0]);
    store(row1, rows[1]);
    store(row2, rows[2]);
    store(row3, rows[3]);
}

} // namespace kx

#endif
