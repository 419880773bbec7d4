/* Four doubles as two vectors of two, where there is no register for four. */
#ifndef KX_SIMD_HALVES_H
#define KX_SIMD_HALVES_H

#include "simd/two.h"

namespace kx
{

struct Double4 {
    Double2 low, high;
};
constexpr bool four_fit_a_register = false;

KX_INLINE Double4 lanes(double a, double b, double c, double d)
{
    return {lanes(a, b), lanes(c, d)};
}
KX_INLINE Double4 splat4(double value) { return {splat2(value), splat2(value)}; }
KX_INLINE Double2 low_half(Double4 v) { return v.low; }
KX_INLINE Double2 high_half(Double4 v) { return v.high; }
KX_INLINE Double4 join(Double2 low, Double2 high) { return {low, high}; }
KX_INLINE Double4 in_low_half(Double2 v) { return {v, v}; }
KX_INLINE Double4 twice(Double2 v) { return {v, v}; }

KX_INLINE Double4 operator+(Double4 a, Double4 b) { return {a.low + b.low, a.high + b.high}; }
KX_INLINE Double4 operator-(Double4 a, Double4 b) { return {a.low - b.low, a.high - b.high}; }
KX_INLINE Double4 operator*(Double4 a, Double4 b) { return {a.low * b.low, a.high * b.high}; }
KX_INLINE Double4 operator/(Double4 a, Double4 b) { return {a.low / b.low, a.high / b.high}; }

/** Two lanes of four halves, which are numbered from 0 to 7. */
template <int A, int B>
KX_INLINE Double2 pick(const Double2 (&halves)[4])
{
    const Double2 a = halves[A / 2], b = halves[B / 2];
    if constexpr (A % 2 == 0 && B % 2 == 0) {
        return A == B ? splat_low(a) : unpack_low(a, b);
    } else if constexpr (A % 2 == 1 && B % 2 == 1) {
        return A == B ? splat_high(a) : unpack_high(a, b);
    } else if constexpr (A % 2 == 0) {
        return A / 2 == B / 2 ? a : low_and_high(a, b);
    } else {
        return A / 2 == B / 2 ? swap_lanes(a) : high_and_low(a, b);
    }
}
template <int A, int B, int C, int D>
KX_INLINE Double4 permute(Double4 v, Double4 w)
{
    const Double2 halves[4] = {v.low, v.high, w.low, w.high};
    return {pick<A, B>(halves), pick<C, D>(halves)};
}
template <int A, int B, int C, int D>
KX_INLINE Double4 permute(Double4 v)
{
    return permute<A, B, C, D>(v, v);
}
KX_INLINE Double4 unpack_low(Double4 a, Double4 b)
{
    return {unpack_low(a.low, b.low), unpack_low(a.high, b.high)};
}
KX_INLINE Double4 unpack_high(Double4 a, Double4 b)
{
    return {unpack_high(a.low, b.low), unpack_high(a.high, b.high)};
}
KX_INLINE Double4 join_low(Double4 a, Double4 b) { return {a.low, b.low}; }
KX_INLINE Double4 join_high(Double4 a, Double4 b) { return {a.high, b.high}; }

KX_INLINE Double4 flush_below(double bound, Double4 v)
{
    return {flush_below(bound, v.low), flush_below(bound, v.high)};
}
KX_INLINE bool any_above(double bound, Double4 v)
{
    return any_above(bound, v.low) || any_above(bound, v.high);
}
KX_INLINE void add_quarter_turns(Double4 n, Double4 *sine, Double4 *cosine)
{
    add_quarter_turns(n.low, &sine->low, &cosine->low);
    add_quarter_turns(n.high, &sine->high, &cosine->high);
}
KX_INLINE Double4 min(Double4 a, Double4 b) { return {min(a.low, b.low), min(a.high, b.high)}; }
KX_INLINE Double4 max(Double4 a, Double4 b) { return {max(a.low, b.low), max(a.high, b.high)}; }
KX_INLINE Double4 change_signs(Double4 v, Double4 signs)
{
    return {change_signs(v.low, signs.low), change_signs(v.high, signs.high)};
}

KX_INLINE Double4 widen(Float4 v) { return {widen(low_half(v)), widen(high_half(v))}; }
KX_INLINE Float4 narrow(Double4 v) { return join(narrow(v.low), narrow(v.high)); }
KX_INLINE Double4 round_to_single(Double4 v)
{
    return {round_to_single(v.low), round_to_single(v.high)};
}
KX_INLINE void store(double *to, Double4 v)
{
    store(to, v.low);
    store(to + 2, v.high);
}
KX_INLINE Double4 load4(const float *from) { return {load2(from), load2(from + 2)}; }
KX_INLINE Double4 load3(const float *from) { return {load2(from), lanes(widen(from[2]), 0.0)}; }
KX_INLINE Double4 broadcast4(const float *from)
{
    const Double2 both = splat2(widen(*from));
    return {both, both};
}
KX_INLINE Double4 broadcast4(const double *from) { return splat4(*from); }

KX_INLINE void store_columns(float *row0, float *row1, float *row2, float *row3, Double4 a,
                             Double4 b, Double4 c, Double4 d)
{
    store_columns(row0, row1, narrow(a.low), narrow(b.low));
    store_columns(row0 + 2, row1 + 2, narrow(c.low), narrow(d.low));
    store_columns(row2, row3, narrow(a.high), narrow(b.high));
    store_columns(row2 + 2, row3 + 2, narrow(c.high), narrow(d.high));
}

} // namespace kx

#endif
