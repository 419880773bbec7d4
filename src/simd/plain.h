/* Two doubles, and four floats, as structs: the portable fallback for sse2.h. */
#ifndef KX_SIMD_PLAIN_H
#define KX_SIMD_PLAIN_H

#include "numeric.h"

namespace kx
{

struct Double2 {
    double one, two;
};
struct Float2 {
    float one, two;
};
struct Float4 {
    Float2 low, high;
};

KX_INLINE Double2 operator+(Double2 a, Double2 b) { return {a.one + b.one, a.two + b.two}; }
KX_INLINE Double2 operator-(Double2 a, Double2 b) { return {a.one - b.one, a.two - b.two}; }
KX_INLINE Double2 operator*(Double2 a, Double2 b) { return {a.one * b.one, a.two * b.two}; }
KX_INLINE Double2 operator/(Double2 a, Double2 b) { return {a.one / b.one, a.two / b.two}; }
KX_INLINE Double2 lanes(double first, double second) { return {first, second}; }
KX_INLINE double low(Double2 p) { return p.one; }
KX_INLINE double high(Double2 p) { return p.two; }
/** The low lane of a, then that of b. */
KX_INLINE Double2 unpack_low(Double2 a, Double2 b) { return {a.one, b.one}; }
KX_INLINE Double2 unpack_high(Double2 a, Double2 b) { return {a.two, b.two}; }
KX_INLINE Double2 swap_lanes(Double2 p) { return {p.two, p.one}; }
KX_INLINE Double2 splat_low(Double2 p) { return {p.one, p.one}; }
KX_INLINE Double2 splat_high(Double2 p) { return {p.two, p.two}; }
KX_INLINE Double2 low_and_high(Double2 a, Double2 b) { return {a.one, b.two}; }
KX_INLINE Double2 high_and_low(Double2 a, Double2 b) { return {a.two, b.one}; }
KX_INLINE Double2 replace_low(double value, Double2 p) { return {value, p.two}; }

/** The greater of each value and 0; a NaN gives 0. */
KX_INLINE Double2 positive_part(Double2 p)
{
    return {p.one > 0.0 ? p.one : 0.0, p.two > 0.0 ? p.two : 0.0};
}
/** The lesser of each value and 0; a NaN stays one. */
KX_INLINE Double2 negative_part(Double2 p)
{
    return {p.one > 0.0 ? 0.0 : p.one, p.two > 0.0 ? 0.0 : p.two};
}
KX_INLINE Double2 change_signs(Double2 p, Double2 signs)
{
    return {p.one * sign(signs.one), p.two * sign(signs.two)};
}
KX_INLINE Double2 negate(Double2 p) { return {-p.one, -p.two}; }

KX_INLINE Double2 negate_high(Double2 p) { return {p.one, -p.two}; }
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
KX_INLINE Double2 flush_below(double bound, Double2 p)
{
    return {magnitude(p.one) >= bound ? p.one : 0.0, magnitude(p.two) >= bound ? p.two : 0.0};
}

KX_INLINE bool any_above(double bound, Double2 p)
{
    return magnitude(p.one) > bound || magnitude(p.two) > bound;
}
/**
 * Adds n quarter turns to angles, given their sines and cosines. Only the last two bits of n count,
 * as bits of a double: it is an integer to which 1.5*2^52 was added.
 */
static inline void add_quarter_turns(double n, double *sine, double *cosine)
{
    const auto quarters = bit_cast<uint64_t>(n);
    const auto s = bit_cast<uint64_t>(*sine), c = bit_cast<uint64_t>(*cosine);
    const uint64_t exchange = (s ^ c) & (0U - (quarters & 1U));
    *sine = bit_cast<double>(s ^ exchange ^ (quarters >> 1U << 63U));
    *cosine = bit_cast<double>(c ^ exchange ^ ((quarters + 1U) >> 1U << 63U));
}
KX_INLINE void add_quarter_turns(Double2 n, Double2 *sine, Double2 *cosine)
{
    add_quarter_turns(n.one, &sine->one, &cosine->one);
    add_quarter_turns(n.two, &sine->two, &cosine->two);
}

KX_INLINE Double2 min(Double2 a, Double2 b)
{
    return {a.one < b.one ? a.one : b.one, a.two < b.two ? a.two : b.two};
}
KX_INLINE Double2 max(Double2 a, Double2 b)
{
    return {a.one > b.one ? a.one : b.one, a.two > b.two ? a.two : b.two};
}

KX_INLINE Double2 widen(Float2 p) { return {widen(p.one), widen(p.two)}; }
KX_INLINE Float2 narrow(Double2 p) { return {narrow(p.one), narrow(p.two)}; }

KX_INLINE Float2 lanes(float first, float second) { return {first, second}; }
KX_INLINE Float2 min(Float2 a, Float2 b)
{
    return {a.one < b.one ? a.one : b.one, a.two < b.two ? a.two : b.two};
}
KX_INLINE Float2 max(Float2 a, Float2 b)
{
    return {a.one > b.one ? a.one : b.one, a.two > b.two ? a.two : b.two};
}
KX_INLINE bool any_outside(Float2 p, Float2 lowest, Float2 highest)
{
    // A number, since of several conditions compilers make branches.
    return (p.one < lowest.one) + (p.two < lowest.two) + (p.one > highest.one) +
               (p.two > highest.two) !=
           0;
}
KX_INLINE Float2 subtract(Float2 a, Float2 b)
{
    return {narrow(widen(a.one) - widen(b.one)), narrow(widen(a.two) - widen(b.two))};
}

KX_INLINE Float2 load_floats2(const float *from) { return {from[0], from[1]}; }
KX_INLINE Double2 load2(const float *from) { return {widen(from[0]), widen(from[1])}; }
KX_INLINE void store(double *to, Double2 p)
{
    to[0] = p.one;
    to[1] = p.two;
}
KX_INLINE void store(float *to, Float2 p)
{
    to[0] = p.one;
    to[1] = p.two;
}
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
KX_INLINE void store_columns(float *top, float *bottom, Float2 left, Float2 right)
{
    top[0] = left.one;
    top[1] = right.one;
    bottom[0] = left.two;
    bottom[1] = right.two;
}
KX_INLINE void store_column(float *top, float *bottom, Float2 column)
{
    *top = column.one;
    *bottom = column.two;
}

KX_INLINE Float4 load_floats4(const float *from)
{
    return {load_floats2(from), load_floats2(from + 2)};
}
KX_INLINE Float4 load_floats3(const float *from) { return {load_floats2(from), {from[2], 0.0f}}; }
KX_INLINE void store(float *to, Float4 v)
{
    store(to, v.low);
    store(to + 2, v.high);
}
KX_INLINE void store_low(float *to, Float4 v) { store(to, v.low); }
KX_INLINE void store_high(float *to, Float4 v) { store(to, v.high); }
KX_INLINE void store3(float *to, Float4 v)
{
    store(to, v.low);
    to[2] = v.high.one;
}
KX_INLINE Float4 broadcast_floats4(const float *from) { return {{*from, *from}, {*from, *from}}; }
KX_INLINE Float2 operator+(Float2 a, Float2 b) { return narrow(widen(a) + widen(b)); }
KX_INLINE Float2 operator*(Float2 a, Float2 b) { return narrow(widen(a) * widen(b)); }
KX_INLINE Float4 operator+(Float4 a, Float4 b) { return {a.low + b.low, a.high + b.high}; }
KX_INLINE Float4 operator*(Float4 a, Float4 b) { return {a.low * b.low, a.high * b.high}; }
KX_INLINE Float4 interleave_low(Float4 a, Float4 b)
{
    return {{a.low.one, b.low.one}, {a.low.two, b.low.two}};
}
KX_INLINE Float4 interleave_high(Float4 a, Float4 b)
{
    return {{a.high.one, b.high.one}, {a.high.two, b.high.two}};
}
template <int A, int B, int C, int D>
KX_INLINE Float4 shuffle(Float4 a, Float4 b)
{
    const float of_a[4] = {a.low.one, a.low.two, a.high.one, a.high.two};
    const float of_b[4] = {b.low.one, b.low.two, b.high.one, b.high.two};
    return {{of_a[A], of_a[B]}, {of_b[C], of_b[D]}};
}
KX_INLINE Float2 low_half(Float4 v) { return v.low; }
KX_INLINE Float2 high_half(Float4 v) { return v.high; }
KX_INLINE Float4 join(Float2 low, Float2 high) { return {low, high}; }

} // namespace kx

#endif
