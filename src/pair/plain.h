/* A pair of doubles as a struct. What pair.h includes where there is nothing better. */
#ifndef KX_PAIR_PLAIN_H
#define KX_PAIR_PLAIN_H

#include "numeric.h"

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

static inline PairOfSingles pair_of_singles(float first, float second)
{
    return {first, second};
}
static inline PairOfSingles lesser(PairOfSingles a, PairOfSingles b)
{
    return {a.one < b.one ? a.one : b.one, a.two < b.two ? a.two : b.two};
}
static inline PairOfSingles greater(PairOfSingles a, PairOfSingles b)
{
    return {a.one > b.one ? a.one : b.one, a.two > b.two ? a.two : b.two};
}
static inline bool any_outside(PairOfSingles p, PairOfSingles lowest, PairOfSingles highest)
{
    // A number, since of several conditions compilers make branches.
    return (p.one < lowest.one) + (p.two < lowest.two) + (p.one > highest.one) +
               (p.two > highest.two) !=
           0;
}
static inline PairOfSingles difference(PairOfSingles a, PairOfSingles b)
{
    return {single(wide(a.one) - wide(b.one)), single(wide(a.two) - wide(b.two))};
}

static inline PairOfSingles load_singles(const float *from)
{
    return {from[0], from[1]};
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
