/* Two doubles as a struct: the portable fallback for two_sse2.h. */
#ifndef KX_SIMD_TWO_PLAIN_H
#define KX_SIMD_TWO_PLAIN_H

#include "numeric.h"

namespace kx
{

struct Double2 {
    double one, two;
};
struct Float2 {
    float one, two;
};

static inline Double2 operator+(Double2 a, Double2 b)
{
    return {a.one + b.one, a.two + b.two};
}
static inline Double2 operator-(Double2 a, Double2 b)
{
    return {a.one - b.one, a.two - b.two};
}
static inline Double2 operator*(Double2 a, Double2 b)
{
    return {a.one * b.one, a.two * b.two};
}
static inline Double2 operator/(Double2 a, Double2 b)
{
    return {a.one / b.one, a.two / b.two};
}
static inline Double2 lanes(double first, double second)
{
    return {first, second};
}
static inline double low(Double2 p)
{
    return p.one;
}
static inline double high(Double2 p)
{
    return p.two;
}
/** The low lane of a, then that of b. */
static inline Double2 unpack_low(Double2 a, Double2 b)
{
    return {a.one, b.one};
}
static inline Double2 unpack_high(Double2 a, Double2 b)
{
    return {a.two, b.two};
}
static inline Double2 swap_lanes(Double2 p)
{
    return {p.two, p.one};
}
static inline Double2 splat_low(Double2 p)
{
    return {p.one, p.one};
}
static inline Double2 splat_high(Double2 p)
{
    return {p.two, p.two};
}
static inline Double2 replace_low(double value, Double2 p)
{
    return {value, p.two};
}

/** The greater of each value and 0; a NaN gives 0. */
static inline Double2 positive_part(Double2 p)
{
    return {p.one > 0.0 ? p.one : 0.0, p.two > 0.0 ? p.two : 0.0};
}
/** The lesser of each value and 0; a NaN stays one. */
static inline Double2 negative_part(Double2 p)
{
    return {p.one > 0.0 ? 0.0 : p.one, p.two > 0.0 ? 0.0 : p.two};
}
static inline Double2 negate(Double2 p)
{
    return {-p.one, -p.two};
}

static inline Double2 negate_low(Double2 p)
{
    return {-p.one, p.two};
}
/** Each value whose magnitude is at or above a bound, and 0 for others and NaN. */
static inline Double2 flush_below(double bound, Double2 p)
{
    return {magnitude(p.one) >= bound ? p.one : 0.0, magnitude(p.two) >= bound ? p.two : 0.0};
}

static inline Double2 widen(Float2 p)
{
    return {widen(p.one), widen(p.two)};
}
static inline Float2 narrow(Double2 p)
{
    return {narrow(p.one), narrow(p.two)};
}

static inline Float2 lanes(float first, float second)
{
    return {first, second};
}
static inline Float2 min(Float2 a, Float2 b)
{
    return {a.one < b.one ? a.one : b.one, a.two < b.two ? a.two : b.two};
}
static inline Float2 max(Float2 a, Float2 b)
{
    return {a.one > b.one ? a.one : b.one, a.two > b.two ? a.two : b.two};
}
static inline bool any_outside(Float2 p, Float2 lowest, Float2 highest)
{
    // A number, since of several conditions compilers make branches.
    return (p.one < lowest.one) + (p.two < lowest.two) + (p.one > highest.one) +
               (p.two > highest.two) !=
           0;
}
static inline Float2 subtract(Float2 a, Float2 b)
{
    return {narrow(widen(a.one) - widen(b.one)), narrow(widen(a.two) - widen(b.two))};
}

static inline Float2 load_floats2(const float *from)
{
    return {from[0], from[1]};
}
static inline Double2 load2(const float *from)
{
    return {widen(from[0]), widen(from[1])};
}
static inline void store(float *to, Float2 p)
{
    to[0] = p.one;
    to[1] = p.two;
}
/** Both columns of a 2x2 block, whose rows are at `top` and `bottom`. */
static inline void store_columns(float *top, float *bottom, Float2 left, Float2 right)
{
    top[0] = left.one;
    top[1] = right.one;
    bottom[0] = left.two;
    bottom[1] = right.two;
}
static inline void store_column(float *top, float *bottom, Float2 column)
{
    *top = column.one;
    *bottom = column.two;
}

} // namespace kx

#endif
