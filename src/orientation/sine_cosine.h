/*
 * The sine and cosine of an angle that is a single, for use as singles.
 *
 * They come from two short polynomials, in double and without fused operations, so that no C
 * library takes part: the same bits everywhere, for one angle or for several in the lanes of a
 * vector. The double is not always the one nearest to the true sine, but the single to which it is
 * rounded is always the C library's: tests/orientation/every_angle.cpp tries every float.
 *
 *     angle = r + n*pi/2, with n the nearest integer, so that |r| <= pi/4
 *     sin r = r + r*t*S(t)    cos r = 1 - t/2 + t*t*C(t)    with t = r*r
 */
#ifndef KX_ORIENTATION_SINE_COSINE_H
#define KX_ORIENTATION_SINE_COSINE_H

#include "numeric.h"
#include "simd/four.h"

namespace kx
{

/** The coefficients of S and C, minimax fits. */
constexpr double sine_terms[6] = {-0x1.5555555555549p-3,  0x1.111111110f871p-7,
                                  -0x1.a01a019c105eep-13, 0x1.71de357699d7cp-19,
                                  -0x1.ae5e6552e4ddfp-26, 0x1.5d92bb77e3381p-33};
constexpr double cosine_terms[6] = {0x1.555555555554cp-5,  -0x1.6c16c16c15174p-10,
                                    0x1.a01a019cb0bdap-16, -0x1.27e4f8092e34fp-22,
                                    0x1.1ee9eb5f17890p-29, -0x1.8fae5219486fap-37};

/** Up to 2^22: beyond it the multiples of a quarter turn are not exact. */
static inline bool is_small_angle(float angle)
{
    return magnitude_bits(angle) <= 0x4a800000U;
}

/**
 * A little above pi/4. Where a host rounds upwards or downwards, n may be off by one and |r| larger
 * than this; such angles are left to the C library.
 */
constexpr double eighth_turn = 0.7854;

/** r, of a small angle, and n in the last bits of `quarters`. `c` puts a number in all lanes. */
template <typename V, typename Splat>
KX_INLINE V reduce(V angle, Splat c, V *quarters)
{
    // 1.5*2^52 leaves a sum no digits after the point. The first part of pi/2 has 31 digits, and so
    // its product with n is exact.
    *quarters = angle * c(0x1.45f306dc9c883p-1) + c(0x1.8p52);
    const V n = *quarters - c(0x1.8p52);
    return angle - n * c(0x1.921fb544p+0) - n * c(0x1.0b4611a626331p-34);
}

/** S, C, or both in different lanes. Terms added in pairs take half the time of one by one. */
template <typename V, typename Terms>
KX_INLINE V polynomial(V t, Terms c)
{
    const V tt = t * t;
    return c(0) + t * c(1) + tt * (c(2) + t * c(3) + tt * (c(4) + t * c(5)));
}

/** Of four small angles. False where they are left to the C library. The sine of -0 is 0 here. */
KX_INLINE bool sine_cosine(Double4 angles, Double4 *sine, Double4 *cosine)
{
    Double4 quarters;
    const Double4 r = reduce(angles, splat4, &quarters), t = r * r;
    const Double4 s = polynomial(t, [](int i) { return splat4(sine_terms[i]); });
    const Double4 c = polynomial(t, [](int i) { return splat4(cosine_terms[i]); });
    *sine = r + r * t * s;
    *cosine = splat4(1.0) - t * splat4(0.5) + t * t * c;
    add_quarter_turns(quarters, sine, cosine);
    return !any_above(eighth_turn, r);
}

struct SineCosine {
    float sine, cosine;
};

/** Of any angle that is a single, or half of one. */
static inline SineCosine sine_cosine(double angle)
{
    const auto size = bit_cast<uint64_t>(magnitude(angle));
    // Zeros, whose sign the C library keeps, are above all others once 1 is subtracted.
    if (size - 1U < bit_cast<uint64_t>(0x1p22)) {
        // The sine and the cosine next to each other.
        Double2 quarters;
        const Double2 r = reduce(splat2(angle), splat2, &quarters), t = r * r;
        const Double2 r_and_t = low_and_high(r, t);
        const Double2 sc =
            polynomial(t, [](int i) { return lanes(sine_terms[i], cosine_terms[i]); });
        Double2 sines = r_and_t * lanes(1.0, -0.5) + lanes(0.0, 1.0) + r_and_t * t * sc;
        // A cosine is the sine of the angle plus a quarter turn, whose cosine is -sine.
        Double2 cosines = negate_high(swap_lanes(sines));
        add_quarter_turns(quarters, &sines, &cosines);
        if (!any_above(eighth_turn, r)) {
            return {narrow(low(sines)), narrow(high(sines))};
        }
    }
    return {narrow(sine(angle)), narrow(cosine(angle))};
}
static inline SineCosine sine_cosine(float angle)
{
    return sine_cosine(widen(angle));
}

} // namespace kx

#endif
