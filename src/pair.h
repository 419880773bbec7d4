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

#include <emmintrin.h>

namespace kx
{

typedef __m128d Pair;
/** Two floats: the lower half of the register. */
typedef __m128 PairOfSingles;

static inline Pair pair(double first, double second)
{
    return _mm_setr_pd(first, second);
}
static inline double first(Pair p)
{
    return _mm_cvtsd_f64(p);
}
/** The first value of a beside the first of b. */
static inline Pair firsts(Pair a, Pair b)
{
    return _mm_castsi128_pd(_mm_unpacklo_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
static inline Pair seconds(Pair a, Pair b)
{
    return _mm_castsi128_pd(_mm_unpackhi_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
}
static inline Pair swapped(Pair p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 3, 2)));
}
static inline Pair both_first(Pair p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(1, 0, 1, 0)));
}
static inline Pair both_second(Pair p)
{
    return _mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(p), _MM_SHUFFLE(3, 2, 3, 2)));
}
static inline double second(Pair p)
{
    return first(both_second(p));
}
static inline Pair with_first(double value, Pair p)
{
    return _mm_move_sd(p, _mm_setr_pd(value, value));
}

/** The greater of each value and 0; a NaN gives 0. */
static inline Pair positive_part(Pair p)
{
    return _mm_max_pd(p, _mm_setzero_pd());
}
/** The lesser of each value and 0; a NaN stays one. */
static inline Pair negative_part(Pair p)
{
    return _mm_min_pd(_mm_setzero_pd(), p);
}
static inline Pair negated(Pair p)
{
    return _mm_xor_pd(p, _mm_set1_pd(-0.0));
}

static inline Pair negated_first(Pair p)
{
    return _mm_xor_pd(p, _mm_setr_pd(-0.0, 0.0));
}
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
static inline Pair or_zero_below(double bound, Pair p)
{
    const Pair size = _mm_andnot_pd(_mm_set1_pd(-0.0), p);
    return _mm_and_pd(p, _mm_cmpge_pd(size, _mm_set1_pd(bound)));
}

static inline Pair wide(PairOfSingles p)
{
    return _mm_cvtps_pd(p);
}
static inline PairOfSingles single(Pair p)
{
    return _mm_cvtpd_ps(p);
}
static inline Pair load(const float *from)
{
#if defined(__clang__)
    return wide(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64 *>(from)));
#else
    // g++ would move the floats to a register first, and the conversion is then two operations.
    Pair p;
    __asm__("%vcvtps2pd %1, %0" : "=x"(p) : "m"(*reinterpret_cast<const __m64 *>(from)));
    return p;
#endif
}
static inline void store(float *to, PairOfSingles p)
{
    _mm_storel_pi(reinterpret_cast<__m64 *>(to), p);
}
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
static inline void store_columns(float *top, float *bottom, PairOfSingles left, PairOfSingles right)
{
    const __m128 rows = _mm_unpacklo_ps(left, right);
    _mm_storel_pi(reinterpret_cast<__m64 *>(top), rows);
    _mm_storeh_pi(reinterpret_cast<__m64 *>(bottom), rows);
}
static inline void store_column(float *top, float *bottom, PairOfSingles column)
{
    *top = column[0];
    *bottom = column[1];
}

} // namespace kx

#else

namespace kx
{

struct Pair {
    double one, two;
};
struct PairOfSingles {
    float one, two;
};

static inline Pair operator+(Pair a, Pair b)
{
    return {a.one + b.one, a.two + b.two};
}
static inline Pair operator-(Pair a, Pair b)
{
    return {a.one - b.one, a.two - b.two};
}
static inline Pair operator*(Pair a, Pair b)
{
    return {a.one * b.one, a.two * b.two};
}
static inline Pair operator/(Pair a, Pair b)
{
    return {a.one / b.one, a.two / b.two};
}
static inline Pair pair(double first, double second)
{
    return {first, second};
}
static inline double first(Pair p)
{
    return p.one;
}
static inline double second(Pair p)
{
    return p.two;
}
/** The first value of a beside the first of b. */
static inline Pair firsts(Pair a, Pair b)
{
    return {a.one, b.one};
}
static inline Pair seconds(Pair a, Pair b)
{
    return {a.two, b.two};
}
static inline Pair swapped(Pair p)
{
    return {p.two, p.one};
}
static inline Pair both_first(Pair p)
{
    return {p.one, p.one};
}
static inline Pair both_second(Pair p)
{
    return {p.two, p.two};
}
static inline Pair with_first(double value, Pair p)
{
    return {value, p.two};
}

/** The greater of each value and 0; a NaN gives 0. */
static inline Pair positive_part(Pair p)
{
    return {p.one > 0.0 ? p.one : 0.0, p.two > 0.0 ? p.two : 0.0};
}
/** The lesser of each value and 0; a NaN stays one. */
static inline Pair negative_part(Pair p)
{
    return {p.one > 0.0 ? 0.0 : p.one, p.two > 0.0 ? 0.0 : p.two};
}
static inline Pair negated(Pair p)
{
    return {-p.one, -p.two};
}

static inline Pair negated_first(Pair p)
{
    return {-p.one, p.two};
}
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
static inline Pair or_zero_below(double bound, Pair p)
{
    return {magnitude(p.one) >= bound ? p.one : 0.0, magnitude(p.two) >= bound ? p.two : 0.0};
}

static inline Pair wide(PairOfSingles p)
{
    return {wide(p.one), wide(p.two)};
}
static inline PairOfSingles single(Pair p)
{
    return {single(p.one), single(p.two)};
}
static inline Pair load(const float *from)
{
    return {wide(from[0]), wide(from[1])};
}
static inline void store(float *to, PairOfSingles p)
{
    to[0] = p.one;
    to[1] = p.two;
}
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
static inline void store_columns(float *top, float *bottom, PairOfSingles left, PairOfSingles right)
{
    top[0] = left.one;
    top[1] = right.one;
    bottom[0] = left.two;
    bottom[1] = right.two;
}
static inline void store_column(float *top, float *bottom, PairOfSingles column)
{
    *top = column.one;
    *bottom = column.two;
}

} // namespace kx

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
