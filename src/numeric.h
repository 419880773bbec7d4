/*
 * The numeric rule, in one place.
 *
 * A record's floats are widened to double before any arithmetic, formulas run in double in the
 * order in which they are written, and a value becomes single only where it is stored (`narrow`) or
 * where a contract names an intermediate as single (`round_to_single`). Outside src/simd no
 * arithmetic uses two floats. Nothing in the language warns of an a*b that stays in float, so
 * functions load what they read through `widen` first; a float is only moved, compared or negated.
 *
 * This is the only file that includes <math.h>. In C++ that header brings overloads for float that
 * would silently compute in single, so the functions are wrapped here and the overloads deleted.
 */
#ifndef KX_NUMERIC_H
#define KX_NUMERIC_H

#include "kxmaths5/types.h"

#include <float.h>
#include <math.h>
#include <string.h>

#if defined(__FAST_MATH__) || defined(_M_FP_FAST) ||                                               \
    (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error "fast maths drops roundings, signs of zero and NaN: the results would be wrong"
#endif
#if FLT_EVAL_METHOD == 2
#error "x87 arithmetic keeps more bits than a double: build with -msse2 -mfpmath=sse"
#endif

namespace kx
{

static inline double widen(float value)
{
    return static_cast<double>(value);
}

/** The one narrowing: rounds to single, for storing. */
static inline float narrow(double value)
{
    return static_cast<float>(value);
}
float narrow(float) = delete;

/** An intermediate that a contract names as single: rounded, and widened again for what follows. */
static inline double round_to_single(double value)
{
    return widen(narrow(value));
}
double round_to_single(float) = delete;

constexpr double tolerance = static_cast<double>(KX_TOLERANCE);
constexpr double huge = static_cast<double>(KX_HUGE);

/** The single nearest to pi/2, widened: a little above a true quarter turn. */
constexpr double quarter_turn = 1.5707963705062866;

static inline double magnitude(double value)
{
    return ::fabs(value);
}
/**
 * 1 or -1, by the sign bit: without a branch. A product with it is exact for zeros and infinities.
 */
static inline double sign(double value)
{
    return ::copysign(1.0, value);
}
static inline double square_root(double value)
{
#if defined(__GNUC__)
    // One instruction without optimisation too: a library may take the root in an x87 register,
    // and then it is rounded twice.
    return __builtin_sqrt(value);
#else
    return ::sqrt(value);
#endif
}
static inline double sine(double angle)
{
    return ::sin(angle);
}
static inline double cosine(double angle)
{
    return ::cos(angle);
}
static inline double arcsine(double value)
{
    return ::asin(value);
}
static inline double arctangent(double y, double x)
{
    return ::atan2(y, x);
}
double magnitude(float) = delete;
double sign(float) = delete;
double square_root(float) = delete;
double sine(float) = delete;
double cosine(float) = delete;
double arcsine(float) = delete;
double arctangent(float, float) = delete;

/** The same bits as another type of the same size. */
template <typename To, typename From>
static inline To bit_cast(From value)
{
    static_assert(sizeof(To) == sizeof(From), "");
    To same{};
    memcpy(&same, &value, sizeof same);
    return same;
}
/**
 * The bits of a magnitude, which are in the order of the magnitudes, with infinity and then NaN
 * last. Comparing them raises no flag for a NaN, and keeps the comparison off the floating-point
 * units.
 */
static inline uint32_t magnitude_bits(float value)
{
    return bit_cast<uint32_t>(value) & 0x7fffffffU;
}
constexpr uint32_t tolerance_bits = 0x358637bdU;
constexpr uint32_t infinity_bits = 0x7f800000U;

/** A vector or point, widened for arithmetic. */
struct Xyz {
    double x, y, z;
};

static inline Xyz widen(const KXV3 &v)
{
    return {widen(v.x), widen(v.y), widen(v.z)};
}

static inline KXV3 narrow(const Xyz &v)
{
    return {narrow(v.x), narrow(v.y), narrow(v.z)};
}

/** Whether a box with these corners is inverted. A NaN does not make it so. */
static inline bool is_inverted(const Xyz &minimum, const Xyz &maximum)
{
    return minimum.x > maximum.x || minimum.y > maximum.y || minimum.z > maximum.z;
}

/** What functions report: a status, 0 for success, or whether a path hits. */
constexpr int32_t done = 0;
constexpr int32_t singular = 1; /**< A matrix that cannot be inverted or taken apart. */
constexpr int32_t no_plane = 1; /**< Three points on a line, or too close to it. */
constexpr int32_t miss = 0;
constexpr int32_t hit = 1;

} // namespace kx

#endif
