/**
 * @file
 * The C++ face of kxmaths5, for C++17 and later: values with operators over the C records.
 *
 * Each type is its C record with behaviour: of the same size, and a pointer to one is a pointer to
 * the record, so that any C function takes it by address, and the array forms take arrays of it.
 * Small operators are inline; everything else calls C. Results have the bits that C gives.
 *
 *     points and vectors     m * point applies the translation, m * vector does not; point - point
 *                            is a vector
 *     failures               are empty std::optionals, where C reports a status
 *     angles                 are radians; kxm::radians(90) makes them from degrees
 *     {} makes               a zero vector, the origin, the identity of matrices and quaternions,
 *                            and an empty box
 *
 * Functions that return a std::optional are templates, so that a program compiles only those that
 * it uses; don't give the argument. kxmaths5/print.hpp has << and std::formatter.
 */
#ifndef KXMATHS5_HPP
#define KXMATHS5_HPP

#include "kxmaths5.h"
#include "kxmaths5/everyday.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#if __cplusplus >= 202002L
#include <span>
#endif

#if defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__)
#error "fast maths drops roundings, signs of zero and NaN: the results would be wrong"
#endif
#if defined(__FLT_EVAL_METHOD__) && __FLT_EVAL_METHOD__ == 2
#error "x87 arithmetic keeps more bits than a double: build with -msse2 -mfpmath=sse"
#endif

/** The C++ face of kxmaths5. */
namespace kxm
{

/** @cond */
namespace detail
{

/** Makes a value whose floats a C function is about to write. */
struct Unset {
};

constexpr double wide(float value)
{
    return static_cast<double>(value);
}

constexpr float single(double value)
{
#if defined(__GNUC__) && !defined(__clang__)
    if (!__builtin_is_constant_evaluated()) {
        return kx_detail_single(value);
    }
#endif
    return static_cast<float>(value);
}

/* A product or quotient of two singles, rounded once, is the same in single as in double. Where
 * there is a fused multiply-add, g++ would leave out the rounding before a sum. */
constexpr float times(float a, float b)
{
#if defined(__FP_FAST_FMAF)
    return single(wide(a * b));
#else
    return a * b;
#endif
}
constexpr float times(float a, double b)
{
    return single(wide(a) * b);
}
constexpr float over(float a, float b)
{
    return a / b;
}
constexpr float over(float a, double b)
{
    return single(wide(a) / b);
}

/** What a vector is multiplied with: a float as it is, any other number as a double. */
template <typename Number, typename = std::enable_if_t<std::is_arithmetic<Number>::value>>
using Scalar = std::conditional_t<std::is_same<Number, float>::value, float, double>;

/* How another library's vector gives its components: as members, or by index. */
template <typename Vector, typename = void>
struct HasMembers : std::false_type {
};
template <typename Vector>
struct HasMembers<Vector,
                  std::void_t<decltype(static_cast<float>(std::declval<const Vector &>().x)),
                              decltype(static_cast<float>(std::declval<const Vector &>().y))>>
    : std::true_type {
};
template <typename Vector, typename = void>
struct HasIndex : std::false_type {
};
template <typename Vector>
struct HasIndex<Vector,
                std::void_t<decltype(static_cast<float>(std::declval<const Vector &>()[0]))>>
    : std::true_type {
};
template <typename Vector>
using IfVector = std::enable_if_t<HasMembers<Vector>::value || HasIndex<Vector>::value>;

template <typename Vector>
constexpr float x_of(const Vector &v)
{
    if constexpr (HasMembers<Vector>::value) {
        return static_cast<float>(v.x);
    } else {
        return static_cast<float>(v[0]);
    }
}
template <typename Vector>
constexpr float y_of(const Vector &v)
{
    if constexpr (HasMembers<Vector>::value) {
        return static_cast<float>(v.y);
    } else {
        return static_cast<float>(v[1]);
    }
}
template <typename Vector>
constexpr float z_of(const Vector &v)
{
    if constexpr (HasMembers<Vector>::value) {
        return static_cast<float>(v.z);
    } else {
        return static_cast<float>(v[2]);
    }
}

/** Another library's vector, by its constructor from three floats or as an aggregate of them. */
template <typename Vector, typename... Floats>
constexpr Vector made(Floats... floats)
{
    if constexpr (std::is_constructible<Vector, Floats...>::value) {
        return Vector(floats...);
    } else {
        return Vector{floats...};
    }
}

#if defined(KX_DETAIL_PAIRS)
template <typename Vector>
Vector packed_cross(const Vector &a, const Vector &b)
{
    const kx_detail_pair a_xy = kx_detail_pair_at(&a, 0), a_yz = kx_detail_pair_at(&a, 1);
    const kx_detail_pair b_xy = kx_detail_pair_at(&b, 0), b_yz = kx_detail_pair_at(&b, 1);
    const kx_detail_pair a_zx = {a_yz[1], a_xy[0]}, b_zx = {b_yz[1], b_xy[0]};
    const kx_detail_pair xy = a_yz * b_zx - a_zx * b_yz;
    const kx_detail_pair z = a_xy * kx_detail_pair{b_xy[1], b_xy[0]};
    return {single(xy[0]), single(xy[1]), single(z[0] - z[1])};
}
#endif

#if defined(__MINGW32__)
/* MinGW's sqrt is off by a last bit where it is a call. */
inline double root_of_dot(const KXV3 &v)
{
    return KXV3Length(&v);
}
#else
inline double root_of_dot(const KXV3 &v)
{
    return sqrt(kx_dot(&v, &v));
}
#endif

/** What a C function writes to its last argument. */
template <typename Value, typename Function, typename... Arguments>
Value result(Function function, Arguments... arguments)
{
    Value value{Unset()};
    function(arguments..., &value);
    return value;
}

/** The same, if the function's status is the one that promises it. */
template <typename Value, typename Function, typename... Arguments>
std::optional<Value> result_on(int32_t wanted, Function function, Arguments... arguments)
{
    std::optional<Value> value{std::in_place, Unset()};
    if (function(arguments..., &*value) != wanted) {
        value.reset();
    }
    return value;
}
template <typename Value, typename Function, typename... Arguments>
std::optional<Value> if_done(Function function, Arguments... arguments)
{
    return result_on<Value>(0, function, arguments...);
}
template <typename Value, typename Function, typename... Arguments>
std::optional<Value> if_hit(Function function, Arguments... arguments)
{
    return result_on<Value>(1, function, arguments...);
}

/** Calls `call` with parts of an array that a C function's count can hold. */
template <typename Call>
void in_parts(std::size_t count, Call call)
{
    constexpr std::size_t most = 0xffffffffU;
    for (std::size_t done = 0; done < count; done += most) {
        const std::size_t rest = count - done;
        call(done, static_cast<std::uint32_t>(rest < most ? rest : most));
    }
}

/** Whether two arrays of floats are equal by value. */
inline bool equal(const float *a, const float *b, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!(a[i] == b[i])) {
            return false;
        }
    }
    return true;
}

/** Copies a matrix, or its transpose. */
template <int size>
void copy(const float *from, float *to, bool transposed)
{
    for (int r = 0; r < size; ++r) {
        for (int c = 0; c < size; ++c) {
            to[size * r + c] = from[transposed ? size * c + r : size * r + c];
        }
    }
}

} // namespace detail
/** @endcond */

/** The order in which three axis rotations are multiplied; the rightmost acts first. */
enum class order : KXRotationOrder {
    xyz = KX_ORDER_XYZ, /**< RX*(RY*RZ). */
    xzy = KX_ORDER_XZY, /**< RX*(RZ*RY). */
    yxz = KX_ORDER_YXZ, /**< RY*(RX*RZ). */
    yzx = KX_ORDER_YZX, /**< RY*(RZ*RX). */
    zxy = KX_ORDER_ZXY, /**< RZ*(RX*RY). */
    zyx = KX_ORDER_ZYX  /**< RZ*(RY*RX). */
};

/** The length units. */
enum class unit : KXUnit {
    none = KX_UNIT_NONE,                  /**< No unit: every factor to it and from it is 1. */
    millimetre = KX_UNIT_MILLIMETRE,      /**< Millimetre. */
    centimetre = KX_UNIT_CENTIMETRE,      /**< Centimetre. */
    metre = KX_UNIT_METRE,                /**< Metre. */
    kilometre = KX_UNIT_KILOMETRE,        /**< Kilometre. */
    inch = KX_UNIT_INCH,                  /**< Inch. */
    foot = KX_UNIT_FOOT,                  /**< Foot. */
    yard = KX_UNIT_YARD,                  /**< Yard. */
    mile = KX_UNIT_MILE,                  /**< Statute mile. */
    nautical_mile = KX_UNIT_NAUTICAL_MILE /**< Nautical mile. */
};

/** What depth the nearest and the farthest plane of a camera get. */
enum class depth : KXDepthRange {
    zero_to_one = KX_DEPTH_0_TO_1,            /**< 0 at the nearest, 1 at the farthest. */
    minus_one_to_one = KX_DEPTH_MINUS_1_TO_1, /**< -1 at the nearest, 1 at the farthest. */
    one_to_zero = KX_DEPTH_1_TO_0             /**< 1 at the nearest, 0 at the farthest. */
};

/** An angle in degrees, in radians. */
[[nodiscard]] constexpr float radians(double degrees)
{
    return detail::single(degrees * 0.017453292519943295);
}

/** An angle in radians, in degrees. */
[[nodiscard]] constexpr double degrees(double radians)
{
    return radians * 57.29577951308232;
}

/** A length converted between units: KXChangeUnits. */
[[nodiscard]] inline float converted(float length, unit from, unit to)
{
    KXChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &length);
    return length;
}

/** A free vector in the plane. */
struct vec2 : KXP2 {
    /** The zero vector. */
    constexpr vec2() : KXP2{0.0f, 0.0f} {}
    /** By its components. */
    constexpr vec2(float x_, float y_) : KXP2{x_, y_} {}
    /** From any vector that has .x and .y or an index; from a point, the vector to it. */
    template <typename Vector, typename = detail::IfVector<Vector>>
    constexpr explicit vec2(const Vector &v) : KXP2{detail::x_of(v), detail::y_of(v)}
    {
    }
    /** @cond */
    explicit vec2(detail::Unset) {}
    /** @endcond */

    /** As another library's vector. */
    template <typename Vector>
    [[nodiscard]] constexpr Vector to() const
    {
        return detail::made<Vector>(x, y);
    }

    /** Adds. */
    constexpr vec2 &operator+=(const vec2 &v) { return *this = *this + v; }
    /** Subtracts. */
    constexpr vec2 &operator-=(const vec2 &v) { return *this = *this - v; }
    /** Multiplies. */
    template <typename Number, typename = detail::Scalar<Number>>
    constexpr vec2 &operator*=(Number s)
    {
        return *this = *this * s;
    }
    /** Divides. */
    template <typename Number, typename = detail::Scalar<Number>>
    constexpr vec2 &operator/=(Number s)
    {
        return *this = *this / s;
    }

    /** Sum. */
    [[nodiscard]] friend constexpr vec2 operator+(const vec2 &a, const vec2 &b)
    {
        return {a.x + b.x, a.y + b.y};
    }
    /** Difference. */
    [[nodiscard]] friend constexpr vec2 operator-(const vec2 &a, const vec2 &b)
    {
        return {a.x - b.x, a.y - b.y};
    }
    /** The vector reversed. */
    [[nodiscard]] friend constexpr vec2 operator-(const vec2 &v) { return {-v.x, -v.y}; }
    /** Product with a number. */
    template <typename Number, typename Scalar = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec2 operator*(const vec2 &v, Number s)
    {
        return {detail::times(v.x, Scalar(s)), detail::times(v.y, Scalar(s))};
    }
    /** Product with a number. */
    template <typename Number, typename = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec2 operator*(Number s, const vec2 &v)
    {
        return v * s;
    }
    /** Quotient by a number. */
    template <typename Number, typename Scalar = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec2 operator/(const vec2 &v, Number s)
    {
        return {detail::over(v.x, Scalar(s)), detail::over(v.y, Scalar(s))};
    }
    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const vec2 &a, const vec2 &b)
    {
        return a.x == b.x && a.y == b.y;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const vec2 &a, const vec2 &b)
    {
        return !(a == b);
    }
};

/** A point in the plane. */
struct point2 : KXP2 {
    /** The origin. */
    constexpr point2() : KXP2{0.0f, 0.0f} {}
    /** By its coordinates. */
    constexpr point2(float x_, float y_) : KXP2{x_, y_} {}
    /** From any vector that has .x and .y or an index; from a vec2, the point that it leads to. */
    template <typename Vector, typename = detail::IfVector<Vector>>
    constexpr explicit point2(const Vector &v) : KXP2{detail::x_of(v), detail::y_of(v)}
    {
    }
    /** @cond */
    explicit point2(detail::Unset) {}
    /** @endcond */

    /** As another library's vector. */
    template <typename Vector>
    [[nodiscard]] constexpr Vector to() const
    {
        return detail::made<Vector>(x, y);
    }

    /** Moves. */
    constexpr point2 &operator+=(const vec2 &v) { return *this = *this + v; }
    /** Moves back. */
    constexpr point2 &operator-=(const vec2 &v) { return *this = *this - v; }

    /** The point moved. */
    [[nodiscard]] friend constexpr point2 operator+(const point2 &p, const vec2 &v)
    {
        return {p.x + v.x, p.y + v.y};
    }
    /** The point moved. */
    [[nodiscard]] friend constexpr point2 operator+(const vec2 &v, const point2 &p)
    {
        return p + v;
    }
    /** The point moved back. */
    [[nodiscard]] friend constexpr point2 operator-(const point2 &p, const vec2 &v)
    {
        return {p.x - v.x, p.y - v.y};
    }
    /** The vector from the second point to the first. */
    [[nodiscard]] friend constexpr vec2 operator-(const point2 &to, const point2 &from)
    {
        return {to.x - from.x, to.y - from.y};
    }
    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const point2 &a, const point2 &b)
    {
        return a.x == b.x && a.y == b.y;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const point2 &a, const point2 &b)
    {
        return !(a == b);
    }
};

/** A free vector: a direction and a length, without a place. */
struct vec3 : KXV3 {
    /** The zero vector. */
    constexpr vec3() : KXV3{0.0f, 0.0f, 0.0f} {}
    /** By its components. */
    constexpr vec3(float x_, float y_, float z_) : KXV3{x_, y_, z_} {}
    /** From any vector that has .x, .y and .z or an index; from a point, the vector to it. */
    template <typename Vector, typename = detail::IfVector<Vector>>
    constexpr explicit vec3(const Vector &v)
        : KXV3{detail::x_of(v), detail::y_of(v), detail::z_of(v)}
    {
    }
    /** @cond */
    explicit vec3(detail::Unset) {}
    /** @endcond */

    /** The unit vector with an elevation and an azimuth in radians: KXEAToVector. */
    [[nodiscard]] static vec3 towards(float elevation, float azimuth)
    {
        return detail::result<vec3>(KXEAToVector, elevation, azimuth);
    }

    /** The length, in double: KXV3Length. */
    [[nodiscard]] double length() const { return detail::root_of_dot(*this); }
    /** The unit vector in this direction; nothing if it is too short to have one: KXV3Normalise. */
    template <typename Vector = vec3>
    [[nodiscard]] std::optional<Vector> normalised() const
    {
        std::optional<Vector> unit{std::in_place, detail::Unset()};
        if (!(KXV3Normalise(this, &*unit) > detail::wide(KX_TOLERANCE))) {
            unit.reset();
        }
        return unit;
    }
    /** The vector of that length in this direction; nothing if it has none: KXV3Scale. */
    template <typename Vector = vec3>
    [[nodiscard]] std::optional<Vector> with_length(float wanted) const
    {
        std::optional<Vector> v;
        if (length() > detail::wide(KX_TOLERANCE)) {
            v = *this;
            KXV3Scale(&*v, wanted);
        }
        return v;
    }
    /** A unit vector in the XZ plane perpendicular to this one: KXV3Perpendicular. */
    [[nodiscard]] vec3 perpendicular() const
    {
        return detail::result<vec3>(KXV3Perpendicular, this);
    }
    /** Rotated about an axis, a unit vector, by radians: KXRotateInPlane. */
    [[nodiscard]] vec3 rotated(const vec3 &axis, float angle) const
    {
        vec3 v = *this;
        KXRotateInPlane(&v, &axis, angle);
        return v;
    }
    /** As another library's vector. */
    template <typename Vector>
    [[nodiscard]] constexpr Vector to() const
    {
        return detail::made<Vector>(x, y, z);
    }
    /** The component along axis 0, 1 or 2. */
    [[nodiscard]] constexpr float operator[](std::size_t axis) const
    {
        return axis == 0 ? x : axis == 1 ? y : z;
    }

    /** Adds. */
    constexpr vec3 &operator+=(const vec3 &v) { return *this = *this + v; }
    /** Subtracts. */
    constexpr vec3 &operator-=(const vec3 &v) { return *this = *this - v; }
    /** Multiplies. */
    template <typename Number, typename = detail::Scalar<Number>>
    constexpr vec3 &operator*=(Number s)
    {
        return *this = *this * s;
    }
    /** Divides. */
    template <typename Number, typename = detail::Scalar<Number>>
    constexpr vec3 &operator/=(Number s)
    {
        return *this = *this / s;
    }

    /** Sum. */
    [[nodiscard]] friend constexpr vec3 operator+(const vec3 &a, const vec3 &b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    /** Difference. */
    [[nodiscard]] friend constexpr vec3 operator-(const vec3 &a, const vec3 &b)
    {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    /** The vector reversed. */
    [[nodiscard]] friend constexpr vec3 operator-(const vec3 &v) { return {-v.x, -v.y, -v.z}; }
    /** Product with a number. */
    template <typename Number, typename Scalar = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec3 operator*(const vec3 &v, Number s)
    {
        return {detail::times(v.x, Scalar(s)), detail::times(v.y, Scalar(s)),
                detail::times(v.z, Scalar(s))};
    }
    /** Product with a number. */
    template <typename Number, typename = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec3 operator*(Number s, const vec3 &v)
    {
        return v * s;
    }
    /** Quotient by a number. */
    template <typename Number, typename Scalar = detail::Scalar<Number>>
    [[nodiscard]] friend constexpr vec3 operator/(const vec3 &v, Number s)
    {
        return {detail::over(v.x, Scalar(s)), detail::over(v.y, Scalar(s)),
                detail::over(v.z, Scalar(s))};
    }
    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const vec3 &a, const vec3 &b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const vec3 &a, const vec3 &b)
    {
        return !(a == b);
    }
};

/** Dot product, in double: kx_dot. */
[[nodiscard]] constexpr double dot(const vec3 &a, const vec3 &b)
{
#if defined(KX_DETAIL_PAIRS)
    if (!__builtin_is_constant_evaluated()) {
        return kx_dot(&a, &b);
    }
#endif
    return detail::wide(a.x) * detail::wide(b.x) + detail::wide(a.y) * detail::wide(b.y) +
           detail::wide(a.z) * detail::wide(b.z);
}

/** Cross product, right-handed: KXV3Cross. */
[[nodiscard]] constexpr vec3 cross(const vec3 &a, const vec3 &b)
{
#if defined(KX_DETAIL_PAIRS)
    if (!__builtin_is_constant_evaluated()) {
        return detail::packed_cross(a, b);
    }
#endif
    const double ax = detail::wide(a.x), ay = detail::wide(a.y), az = detail::wide(a.z);
    const double bx = detail::wide(b.x), by = detail::wide(b.y), bz = detail::wide(b.z);
    return {detail::single(ay * bz - az * by), detail::single(az * bx - ax * bz),
            detail::single(ax * by - ay * bx)};
}

/** Weighted sum, rounded once: s*a + t*b, KXV3Combine. */
[[nodiscard]] inline vec3 combine(const vec3 &a, const vec3 &b, float s, float t)
{
    vec3 sum{detail::Unset()};
    KXV3Combine(&a, &b, &sum, s, t);
    return sum;
}

/** Linear interpolation: kx_lerp. */
[[nodiscard]] inline vec3 lerp(const vec3 &a, const vec3 &b, float t)
{
    return detail::result<vec3>(kx_lerp, &a, &b, t);
}

/** A point in space. */
struct point3 : KXP3 {
    /** The origin. */
    constexpr point3() : KXP3{0.0f, 0.0f, 0.0f} {}
    /** By its coordinates. */
    constexpr point3(float x_, float y_, float z_) : KXP3{x_, y_, z_} {}
    /** From any vector that has .x, .y and .z or an index; from a vec3, the point it leads to. */
    template <typename Vector, typename = detail::IfVector<Vector>>
    constexpr explicit point3(const Vector &v)
        : KXP3{detail::x_of(v), detail::y_of(v), detail::z_of(v)}
    {
    }
    /** @cond */
    explicit point3(detail::Unset) {}
    /** @endcond */

    /** The point at a range, elevation and azimuth from the origin, in radians: KXREAToPoint. */
    [[nodiscard]] static point3 polar(float range, float elevation, float azimuth)
    {
        return detail::result<point3>(KXREAToPoint, range, elevation, azimuth);
    }

    /** In another length unit: KXP3ChangeUnits. */
    [[nodiscard]] point3 converted(unit from, unit to) const
    {
        point3 p = *this;
        KXP3ChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &p);
        return p;
    }
    /** Rotated about an axis through the origin, a unit vector, by radians: KXRotateInPlane. */
    [[nodiscard]] point3 rotated(const vec3 &axis, float angle) const
    {
        point3 p = *this;
        KXRotateInPlane(&p, &axis, angle);
        return p;
    }
    /** As another library's vector. */
    template <typename Vector>
    [[nodiscard]] constexpr Vector to() const
    {
        return detail::made<Vector>(x, y, z);
    }
    /** The coordinate along axis 0, 1 or 2. */
    [[nodiscard]] constexpr float operator[](std::size_t axis) const
    {
        return axis == 0 ? x : axis == 1 ? y : z;
    }

    /** Moves. */
    constexpr point3 &operator+=(const vec3 &v) { return *this = *this + v; }
    /** Moves back. */
    constexpr point3 &operator-=(const vec3 &v) { return *this = *this - v; }

    /** The point moved. */
    [[nodiscard]] friend constexpr point3 operator+(const point3 &p, const vec3 &v)
    {
        return {p.x + v.x, p.y + v.y, p.z + v.z};
    }
    /** The point moved. */
    [[nodiscard]] friend constexpr point3 operator+(const vec3 &v, const point3 &p)
    {
        return p + v;
    }
    /** The point moved back. */
    [[nodiscard]] friend constexpr point3 operator-(const point3 &p, const vec3 &v)
    {
        return {p.x - v.x, p.y - v.y, p.z - v.z};
    }
    /** The vector from the second point to the first. */
    [[nodiscard]] friend constexpr vec3 operator-(const point3 &to, const point3 &from)
    {
        return {to.x - from.x, to.y - from.y, to.z - from.z};
    }
    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const point3 &a, const point3 &b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const point3 &a, const point3 &b)
    {
        return !(a == b);
    }
};

/** Distance, in double: kx_distance. */
[[nodiscard]] inline double distance(const point3 &a, const point3 &b)
{
    return kx_distance(&a, &b);
}

/** Linear interpolation: kx_lerp. */
[[nodiscard]] inline point3 lerp(const point3 &a, const point3 &b, float t)
{
    return detail::result<point3>(kx_lerp, &a, &b, t);
}

/** A homogeneous point. */
struct point4 : KXP4 {
    /** The origin: 0, 0, 0, 1. */
    constexpr point4() : KXP4{0.0f, 0.0f, 0.0f, 1.0f} {}
    /** By its coordinates. */
    constexpr point4(float x_, float y_, float z_, float w_) : KXP4{x_, y_, z_, w_} {}
    /** A position: w is 1. */
    constexpr explicit point4(const point3 &p) : KXP4{p.x, p.y, p.z, 1.0f} {}
    /** A direction: w is 0. */
    constexpr explicit point4(const vec3 &v) : KXP4{v.x, v.y, v.z, 0.0f} {}
    /** From the record. */
    constexpr explicit point4(const KXP4 &p) : KXP4(p) {}
    /** @cond */
    explicit point4(detail::Unset) {}
    /** @endcond */

    /** x/w, y/w, z/w; nothing where w is 0: kx_divide_by_w. */
    template <typename Point = point3>
    [[nodiscard]] std::optional<Point> divided_by_w() const
    {
        return detail::if_done<Point>(kx_divide_by_w, this);
    }
    /** In another length unit; w stays: KXP4ChangeUnits. */
    [[nodiscard]] point4 converted(unit from, unit to) const
    {
        point4 p = *this;
        KXP4ChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &p);
        return p;
    }
    /** As another library's vector. */
    template <typename Vector>
    [[nodiscard]] constexpr Vector to() const
    {
        return detail::made<Vector>(x, y, z, w);
    }

    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const point4 &a, const point4 &b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const point4 &a, const point4 &b)
    {
        return !(a == b);
    }
};

struct mat4;
struct components;
struct plane_placement;
struct placement_and_scale;

/** A quaternion. There is no constructor by position, since libraries differ in where w is. */
struct quat : KXQuat {
    /** The identity: no rotation. */
    constexpr quat() : KXQuat{0.0f, 0.0f, 0.0f, 1.0f} {}
    /** From the record. */
    constexpr explicit quat(const KXQuat &q) : KXQuat(q) {}
    /** @cond */
    explicit quat(detail::Unset) {}
    /** @endcond */

    /** By its elements, the vector part first. */
    [[nodiscard]] static constexpr quat xyzw(float x_, float y_, float z_, float w_)
    {
        return quat(KXQuat{x_, y_, z_, w_});
    }
    /** By its elements, the scalar part first. */
    [[nodiscard]] static constexpr quat wxyz(float w_, float x_, float y_, float z_)
    {
        return quat(KXQuat{x_, y_, z_, w_});
    }
    /** A rotation about an axis of any length, by radians: KXGenerateQuat. */
    [[nodiscard]] static quat about(const vec3 &axis, float angle)
    {
        return detail::result<quat>(KXGenerateQuat, angle, &axis);
    }

    /** The inverse rotation, of a unit quaternion: kx_quat_conjugate. */
    [[nodiscard]] constexpr quat conjugate() const { return xyzw(-x, -y, -z, w); }
    /** The unit quaternion; nothing if this one is too short: kx_quat_normalise. */
    template <typename Quat = quat>
    [[nodiscard]] std::optional<Quat> normalised() const
    {
        std::optional<Quat> unit{std::in_place, detail::Unset()};
        if (!(kx_quat_normalise(this, &*unit) > detail::wide(KX_TOLERANCE))) {
            unit.reset();
        }
        return unit;
    }
    /** The rotation as a matrix: KXQuatToMatrix. */
    [[nodiscard]] mat4 matrix() const;

    /** Multiplies from the right. */
    quat &operator*=(const quat &b) { return *this = *this * b; }

    /** Product, which rotates by b first: kx_quat_product. */
    [[nodiscard]] friend quat operator*(const quat &a, const quat &b)
    {
        return detail::result<quat>(kx_quat_product, &a, &b);
    }
    /** A vector rotated: kx_quat_rotate. */
    [[nodiscard]] friend vec3 operator*(const quat &q, const vec3 &v)
    {
        return detail::result<vec3>(kx_quat_rotate, &q, &v);
    }
    /** A point rotated about the origin: kx_quat_rotate. */
    [[nodiscard]] friend point3 operator*(const quat &q, const point3 &p)
    {
        return detail::result<point3>(kx_quat_rotate, &q, &p);
    }
    /** Equality by value; q and -q, though one rotation, differ. */
    [[nodiscard]] friend constexpr bool operator==(const quat &a, const quat &b)
    {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const quat &a, const quat &b)
    {
        return !(a == b);
    }
};

/** From a to b along the shorter arc: kx_quat_slerp. */
[[nodiscard]] inline quat slerp(const quat &a, const quat &b, float t)
{
    return detail::result<quat>(kx_quat_slerp, &a, &b, t);
}

/** A transform of the plane, homogeneous 3x3, row-major. */
struct mat3 : KXM3 {
    /** The identity, which leaves every point where it is. */
    constexpr mat3() : KXM3{{{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}} {}
    /** By its elements, row by row. */
    constexpr mat3(float m00, float m01, float m02, float m10, float m11, float m12, float m20,
                   float m21, float m22)
        : KXM3{{{m00, m01, m02}, {m10, m11, m12}, {m20, m21, m22}}}
    {
    }
    /** From the record. */
    constexpr explicit mat3(const KXM3 &matrix) : KXM3(matrix) {}
    /** @cond */
    explicit mat3(detail::Unset) {}
    /** @endcond */

    /** From nine row-major floats. */
    [[nodiscard]] static mat3 from_rows(const float *floats)
    {
        mat3 out{detail::Unset()};
        detail::copy<3>(floats, &out.m[0][0], false);
        return out;
    }
    /** From nine column-major floats. */
    [[nodiscard]] static mat3 from_columns(const float *floats)
    {
        mat3 out{detail::Unset()};
        detail::copy<3>(floats, &out.m[0][0], true);
        return out;
    }
    /** Scale about the origin: KXM3Scale. */
    [[nodiscard]] static mat3 scale(float sx, float sy)
    {
        return detail::result<mat3>(KXM3Scale, sx, sy);
    }
    /** Translation: KXM3Translate. */
    [[nodiscard]] static mat3 translation(const vec2 &step)
    {
        return detail::result<mat3>(KXM3Translate, step.x, step.y);
    }
    /** Rotation by a cosine and a sine, +X towards +Y: KXM3Rotate2. */
    [[nodiscard]] static mat3 rotation(float cosine, float sine)
    {
        return detail::result<mat3>(KXM3Rotate2, cosine, sine);
    }
    /** Rotation by radians, +X towards +Y; its cosine and sine are those of KXM4Orientation. */
    [[nodiscard]] static mat3 rotation(float angle)
    {
        KXM4 turn;
        KXM4Orientation(&turn, nullptr, 0.0f, 0.0f, angle, KX_ORDER_XYZ);
        return rotation(turn.m[0][0], turn.m[1][0]);
    }

    /** The element in a row and a column. */
    [[nodiscard]] constexpr float operator()(int row, int column) const { return m[row][column]; }
    /** The element in a row and a column. */
    [[nodiscard]] constexpr float &operator()(int row, int column) { return m[row][column]; }
    /** Writes nine floats row-major. */
    void to_rows(float *floats) const { detail::copy<3>(&m[0][0], floats, false); }
    /** Writes nine floats column-major. */
    void to_columns(float *floats) const { detail::copy<3>(&m[0][0], floats, true); }

    /** Determinant, in double: KXM3Determinant. */
    [[nodiscard]] double determinant() const { return KXM3Determinant(this); }
    /** Whether it is the identity, within KX_TOLERANCE: KXM3IsUnit. */
    [[nodiscard]] bool is_identity() const { return KXM3IsUnit(this) != 0; }
    /** Rows and columns exchanged: KXM3Transpose. */
    [[nodiscard]] mat3 transposed() const { return detail::result<mat3>(KXM3Transpose, this); }
    /** The inverse; nothing if the matrix counts as singular: KXM3Inverse. */
    template <typename Matrix = mat3>
    [[nodiscard]] std::optional<Matrix> inverse() const
    {
        return detail::if_done<Matrix>(KXM3Inverse, this);
    }
    /** Scale, shear, rotation and translation; nothing if it is singular: KXM3Decompose. */
    template <typename Parts = components>
    [[nodiscard]] std::optional<Parts> decomposed() const
    {
        return detail::if_done<Parts>(KXM3Decompose, this);
    }
    /** Translation, angle and scale, by columns: KXM3MatrixComponents. */
    [[nodiscard]] plane_placement placement() const;

    /** Multiplies from the right: b acts first. */
    mat3 &operator*=(const mat3 &b)
    {
        KXM3Mult(this, &b, this);
        return *this;
    }
    /** Adds. */
    mat3 &operator+=(const mat3 &b)
    {
        KXM3Add(this, &b, this);
        return *this;
    }

    /** Product, which applies b first: KXM3Mult. */
    [[nodiscard]] friend mat3 operator*(const mat3 &a, const mat3 &b)
    {
        return detail::result<mat3>(KXM3Mult, &a, &b);
    }
    /** Sum: KXM3Add. */
    [[nodiscard]] friend mat3 operator+(const mat3 &a, const mat3 &b)
    {
        return detail::result<mat3>(KXM3Add, &a, &b);
    }
    /** A position transformed: KXM3P2I1. */
    [[nodiscard]] friend point2 operator*(const mat3 &m, const point2 &p)
    {
        return detail::result<point2>(KXM3P2I1, &m, &p);
    }
    /** A direction transformed: KXM3P2I0. */
    [[nodiscard]] friend vec2 operator*(const mat3 &m, const vec2 &v)
    {
        return detail::result<vec2>(KXM3P2I0, &m, &v);
    }
    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const mat3 &a, const mat3 &b)
    {
        return detail::equal(&a.m[0][0], &b.m[0][0], 9);
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const mat3 &a, const mat3 &b) { return !(a == b); }
};

/**
 * A transform of space, homogeneous 4x4, row-major. It multiplies column vectors from the left: the
 * translation is the last column, and in a*b the right factor acts first.
 */
struct mat4 : KXM4 {
    /** The identity, which leaves every point where it is. */
    constexpr mat4()
        : KXM4{{{1.0f, 0.0f, 0.0f, 0.0f},
                {0.0f, 1.0f, 0.0f, 0.0f},
                {0.0f, 0.0f, 1.0f, 0.0f},
                {0.0f, 0.0f, 0.0f, 1.0f}}}
    {
    }
    /** By its elements, row by row. */
    constexpr mat4(float m00, float m01, float m02, float m03, float m10, float m11, float m12,
                   float m13, float m20, float m21, float m22, float m23, float m30, float m31,
                   float m32, float m33)
        : KXM4{{{m00, m01, m02, m03},
                {m10, m11, m12, m13},
                {m20, m21, m22, m23},
                {m30, m31, m32, m33}}}
    {
    }
    /** From the record. */
    constexpr explicit mat4(const KXM4 &matrix) : KXM4(matrix) {}
    /** @cond */
    explicit mat4(detail::Unset) {}
    /** @endcond */

    /** From sixteen row-major floats. */
    [[nodiscard]] static mat4 from_rows(const float *floats)
    {
        mat4 out{detail::Unset()};
        detail::copy<4>(floats, &out.m[0][0], false);
        return out;
    }
    /** From sixteen column-major floats, as in GLM and OpenGL. */
    [[nodiscard]] static mat4 from_columns(const float *floats)
    {
        mat4 out{detail::Unset()};
        detail::copy<4>(floats, &out.m[0][0], true);
        return out;
    }
    /** Scale about the origin: KXM4Scale. */
    [[nodiscard]] static mat4 scale(float sx, float sy, float sz)
    {
        return detail::result<mat4>(KXM4Scale, sx, sy, sz);
    }
    /** The same scale along all axes: KXM4Scale. */
    [[nodiscard]] static mat4 scale(float s) { return scale(s, s, s); }
    /** Translation: KXM4Translate. */
    [[nodiscard]] static mat4 translation(const vec3 &step)
    {
        return detail::result<mat4>(KXM4Translate, step.x, step.y, step.z);
    }
    /** Rotation about the three axes, in radians, in an order: KXM4Orientation. */
    [[nodiscard]] static mat4 rotation(float x, float y, float z, order of_factors)
    {
        mat4 out{detail::Unset()};
        KXM4Orientation(&out, nullptr, x, y, z, static_cast<KXRotationOrder>(of_factors));
        return out;
    }
    /** Rotation about X by radians, +Y towards +Z: KXM4Orientation. */
    [[nodiscard]] static mat4 rotation_x(float angle)
    {
        return rotation(angle, 0.0f, 0.0f, order::xyz);
    }
    /** Rotation about Y by radians, +Z towards +X: KXM4Orientation. */
    [[nodiscard]] static mat4 rotation_y(float angle)
    {
        return rotation(0.0f, angle, 0.0f, order::xyz);
    }
    /** Rotation about Z by radians, +X towards +Y: KXM4Orientation. */
    [[nodiscard]] static mat4 rotation_z(float angle)
    {
        return rotation(0.0f, 0.0f, angle, order::xyz);
    }
    /** Rotation about X by a cosine and a sine: KXM4RotateX2. */
    [[nodiscard]] static mat4 rotation_x(float cosine, float sine)
    {
        return detail::result<mat4>(KXM4RotateX2, cosine, sine);
    }
    /** Rotation about Y by a cosine and a sine: KXM4RotateY2. */
    [[nodiscard]] static mat4 rotation_y(float cosine, float sine)
    {
        return detail::result<mat4>(KXM4RotateY2, cosine, sine);
    }
    /** Rotation about Z by a cosine and a sine: KXM4RotateZ2. */
    [[nodiscard]] static mat4 rotation_z(float cosine, float sine)
    {
        return detail::result<mat4>(KXM4RotateZ2, cosine, sine);
    }
    /** Shear of x along y: KXM4ShearXY2. */
    [[nodiscard]] static mat4 shear_xy(float slope)
    {
        return detail::result<mat4>(KXM4ShearXY2, slope);
    }
    /** Shear of x along z: KXM4ShearXZ2. */
    [[nodiscard]] static mat4 shear_xz(float slope)
    {
        return detail::result<mat4>(KXM4ShearXZ2, slope);
    }
    /** Shear of y along z: KXM4ShearYZ2. */
    [[nodiscard]] static mat4 shear_yz(float slope)
    {
        return detail::result<mat4>(KXM4ShearYZ2, slope);
    }

    /** The element in a row and a column. */
    [[nodiscard]] constexpr float operator()(int row, int column) const { return m[row][column]; }
    /** The element in a row and a column. */
    [[nodiscard]] constexpr float &operator()(int row, int column) { return m[row][column]; }
    /** Writes sixteen floats row-major. */
    void to_rows(float *floats) const { detail::copy<4>(&m[0][0], floats, false); }
    /** Writes sixteen floats column-major, as in GLM and OpenGL. */
    void to_columns(float *floats) const { detail::copy<4>(&m[0][0], floats, true); }

    /** Determinant, in double: KXM4Determinant. */
    [[nodiscard]] double determinant() const { return KXM4Determinant(this); }
    /** Whether it is the identity, within KX_TOLERANCE: KXM4IsUnit. */
    [[nodiscard]] bool is_identity() const { return KXM4IsUnit(this) != 0; }
    /** Whether the first three columns are perpendicular: KXM4IsOrthogonal. */
    [[nodiscard]] bool is_orthogonal() const { return KXM4IsOrthogonal(this) != 0; }
    /** Rows and columns exchanged: KXM4Transpose. */
    [[nodiscard]] mat4 transposed() const { return detail::result<mat4>(KXM4Transpose, this); }
    /** The inverse; nothing if the matrix counts as singular: KXM4Inverse. */
    template <typename Matrix = mat4>
    [[nodiscard]] std::optional<Matrix> inverse() const
    {
        return detail::if_done<Matrix>(KXM4Inverse, this);
    }
    /** Its translation in another length unit: KXM4ChangeUnits. */
    [[nodiscard]] mat4 converted(unit from, unit to) const
    {
        mat4 out = *this;
        KXM4ChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &out);
        return out;
    }
    /** The rotation as a quaternion: KXMatrixToQuat. */
    [[nodiscard]] quat quaternion() const { return detail::result<quat>(KXMatrixToQuat, this); }
    /** Scale, shear, rotation, translation, perspective; nothing if singular: KXM4Decompose. */
    template <typename Parts = components>
    [[nodiscard]] std::optional<Parts> decomposed() const
    {
        return detail::if_done<Parts>(KXM4Decompose, this);
    }
    /** Position and scale, by columns: KXM4MatrixComponents. */
    [[nodiscard]] placement_and_scale placement() const;

    /** Multiplies from the right: b acts first. */
    mat4 &operator*=(const mat4 &b)
    {
        KXM4Mult(this, &b, this);
        return *this;
    }
    /** Adds. */
    mat4 &operator+=(const mat4 &b)
    {
        KXM4Add(this, &b, this);
        return *this;
    }

    /** Product, which applies b first: KXM4Mult. */
    [[nodiscard]] friend mat4 operator*(const mat4 &a, const mat4 &b)
    {
        return detail::result<mat4>(KXM4Mult, &a, &b);
    }
    /** Sum: KXM4Add. */
    [[nodiscard]] friend mat4 operator+(const mat4 &a, const mat4 &b)
    {
        return detail::result<mat4>(KXM4Add, &a, &b);
    }
    /** A position transformed; row 3 is not read: KXM4P3I1. */
    [[nodiscard]] friend point3 operator*(const mat4 &m, const point3 &p)
    {
        return detail::result<point3>(KXM4P3I1, &m, &p);
    }
    /** A direction transformed; row 3 and column 3 are not read: KXM4P3I0. */
    [[nodiscard]] friend vec3 operator*(const mat4 &m, const vec3 &v)
    {
        return detail::result<vec3>(KXM4P3I0, &m, &v);
    }
    /** A homogeneous point transformed: KXM4P4. */
    [[nodiscard]] friend point4 operator*(const mat4 &m, const point4 &p)
    {
        return detail::result<point4>(KXM4P4, &m, &p);
    }
    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const mat4 &a, const mat4 &b)
    {
        return detail::equal(&a.m[0][0], &b.m[0][0], 16);
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const mat4 &a, const mat4 &b) { return !(a == b); }
};

inline mat4 quat::matrix() const
{
    return detail::result<mat4>(KXQuatToMatrix, this);
}

/** A transform and its inverse: `auto [there, back] = ...`. */
struct there_and_back {
    mat4 there; /**< The transform. */
    mat4 back;  /**< Its inverse. */
};

/** A position and three Euler angles: x, y, z and, in radians, rotateX, rotateY, rotateZ. */
struct position : KXPosition {
    /** The origin, not rotated. */
    constexpr position() : KXPosition{0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f} {}
    /** At a point, rotated about the three axes by radians. */
    constexpr explicit position(const point3 &at, float rotate_x = 0.0f, float rotate_y = 0.0f,
                                float rotate_z = 0.0f)
        : KXPosition{at.x, at.y, at.z, rotate_x, rotate_y, rotate_z}
    {
    }
    /** From the record. */
    template <typename Record, typename = std::enable_if_t<std::is_same<Record, KXPosition>::value>>
    constexpr explicit position(const Record &record) : KXPosition(record)
    {
    }
    /** @cond */
    explicit position(detail::Unset) {}
    /** @endcond */

    /** The placement: KXM4Position. */
    [[nodiscard]] mat4 matrix(order of_factors) const
    {
        mat4 out{detail::Unset()};
        KXM4Position(&out, nullptr, this, static_cast<KXRotationOrder>(of_factors));
        return out;
    }
    /** The placement and its inverse, from the same sines and cosines: KXM4Position. */
    [[nodiscard]] there_and_back matrices(order of_factors) const
    {
        there_and_back out{mat4(detail::Unset()), mat4(detail::Unset())};
        KXM4Position(&out.there, &out.back, this, static_cast<KXRotationOrder>(of_factors));
        return out;
    }
    /** The viewing matrix of one eye of two: KXM4Projection1. */
    [[nodiscard]] mat4 viewing(float plane_distance, float side_offset, float y_scale) const
    {
        mat4 out{detail::Unset()};
        KXM4Projection1(&out, this, plane_distance, side_offset, y_scale);
        return out;
    }

    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const position &a, const position &b)
    {
        return detail::equal(&a.x, &b.x, 6);
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const position &a, const position &b) { return !(a == b); }
};

/** What KXM4MatrixComponents reads off a transform. */
struct placement_and_scale {
    kxm::position position; /**< Translation, and angles in radians for order::yxz. */
    vec3 scale;             /**< The lengths of the columns. */
};

/** What KXM3MatrixComponents reads off a transform of the plane. */
struct plane_placement {
    point2 at;     /**< Translation. */
    float angle;   /**< In radians. */
    float scale_x; /**< Length of the first column, negative when mirrored. */
    float scale_y; /**< Length of the second column. */
};

/** The parts of a transform, by rows: scale, shear, rotation, translation, perspective. */
struct components : KXComponents {
    /** The parts of the identity. */
    constexpr components() : KXComponents{} { scaleX = scaleY = scaleZ = perspectiveW = 1.0f; }
    /** From the record. */
    constexpr explicit components(const KXComponents &parts) : KXComponents(parts) {}
    /** @cond */
    explicit components(detail::Unset) {}
    /** @endcond */

    /** The transform without shear and perspective: KXM4Compose. */
    [[nodiscard]] mat4 matrix() const
    {
        mat4 out{detail::Unset()};
        KXM4Compose(&out, this);
        return out;
    }
    /** The transform of the plane, without shear: KXM3Compose. */
    [[nodiscard]] mat3 plane_matrix() const
    {
        mat3 out{detail::Unset()};
        KXM3Compose(&out, this);
        return out;
    }
};

inline placement_and_scale mat4::placement() const
{
    placement_and_scale out{position(detail::Unset()), vec3(detail::Unset())};
    KXM4MatrixComponents(this, &out.position, &out.scale);
    return out;
}

inline plane_placement mat3::placement() const
{
    plane_placement out{point2(detail::Unset()), 0.0f, 0.0f, 0.0f};
    KXM3MatrixComponents(this, &out.at, &out.angle, &out.scale_x, &out.scale_y);
    return out;
}

/** An axis-aligned box. */
struct box : KXBox {
    /** The empty box: inverted, so that the first point or box included becomes it. */
    constexpr box() : KXBox{{KX_HUGE, KX_HUGE, KX_HUGE}, {-KX_HUGE, -KX_HUGE, -KX_HUGE}} {}
    /** By its corners with the lowest and the highest coordinates. */
    constexpr box(const point3 &lowest, const point3 &highest) : KXBox{lowest, highest} {}
    /** From the record. */
    constexpr explicit box(const KXBox &record) : KXBox(record) {}
    /** @cond */
    explicit box(detail::Unset) {}
    /** @endcond */

    /** The box around an array of points; the empty box around none. */
    [[nodiscard]] static box around(const point3 *points, std::size_t count)
    {
        // From the first point, since the empty box takes no coordinate beyond KX_HUGE.
        box out = count > 0 ? box(points[0], points[0]) : box();
        for (std::size_t i = 1; i < count; ++i) {
            out.include(points[i]);
        }
        return out;
    }
#if __cplusplus >= 202002L
    /** The box around an array of points; the empty box around none. */
    [[nodiscard]] static box around(std::span<const point3> points)
    {
        return around(points.data(), points.size());
    }
#endif

    /** The corner with the lowest coordinates. */
    [[nodiscard]] constexpr point3 minimum() const
    {
        return point3(KXBox::minimum);
    }
    /** The corner with the highest coordinates. */
    [[nodiscard]] constexpr point3 maximum() const
    {
        return point3(KXBox::maximum);
    }
    /** The middle: KXBoxMidPoint. */
    [[nodiscard]] point3 middle() const
    {
        return detail::result<point3>(KXBoxMidPoint, this);
    }
    /** The vector from corner to corner: KXBoxDiagonal. */
    [[nodiscard]] vec3 diagonal() const
    {
        return detail::result<vec3>(KXBoxDiagonal, this);
    }
    /** Whether each maximum is at or above its minimum: KXIsValidBox. */
    [[nodiscard]] bool is_valid() const
    {
        return KXIsValidBox(this) != 0;
    }
    /** Extends it to contain a point; true if it changed: KXPutPointInBox. */
    bool include(const point3 &p)
    {
        return KXPutPointInBox(&p, this) != 0;
    }
    /** Extends it to contain another box: KXCombineBoxes. */
    void include(const box &other)
    {
        KXCombineBoxes(this, &other);
    }
    /** In another length unit: KXBoxChangeUnits. */
    [[nodiscard]] box converted(unit from, unit to) const
    {
        box out = *this;
        KXBoxChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &out);
        return out;
    }
    /** The transform that makes a mesh in this box fit for intersections, and the way back; nothing
     * if it has no extent: kx_fit_mesh. */
    template <typename Pair = there_and_back>
    [[nodiscard]] std::optional<Pair> fit() const
    {
        std::optional<Pair> out = Pair{mat4(), mat4()};
        if (kx_fit_mesh(this, &out->there, &out->back) != 0) {
            out.reset();
        }
        return out;
    }

    /** The box around the transformed box: KXTransformBox. */
    [[nodiscard]] friend box operator*(const mat4 &m, const box &b)
    {
        return detail::result<box>(KXTransformBox, &b, &m);
    }
    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const box &a, const box &b)
    {
        return a.minimum() == b.minimum() && a.maximum() == b.maximum();
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const box &a, const box &b)
    {
        return !(a == b);
    }
};

/** The plane a*x + b*y + c*z + d = 0. */
struct plane : KXPlane {
    /** No plane: all zeros, which nothing hits. */
    constexpr plane() : KXPlane{0.0f, 0.0f, 0.0f, 0.0f} {}
    /** By its coefficients. */
    constexpr plane(float a_, float b_, float c_, float d_) : KXPlane{a_, b_, c_, d_} {}
    /** From the record. */
    constexpr explicit plane(const KXPlane &record) : KXPlane(record) {}
    /** @cond */
    explicit plane(detail::Unset) {}
    /** @endcond */

    /** Through three points, with a unit normal; nothing if they define none: KXPlaneEquation. */
    template <typename Plane = plane>
    [[nodiscard]] static std::optional<Plane> through(const point3 &first, const point3 &second,
                                                      const point3 &third)
    {
        return detail::if_done<Plane>(KXPlaneEquation, &first, &second, &third);
    }

    /** The normal: a, b, c. */
    [[nodiscard]] constexpr vec3 normal() const { return {a, b, c}; }
    /** In another length unit: KXPlaneChangeUnits. */
    [[nodiscard]] plane converted(unit from, unit to) const
    {
        plane out = *this;
        KXPlaneChangeUnits(static_cast<KXUnit>(from), static_cast<KXUnit>(to), &out);
        return out;
    }

    /** Equality by value. */
    [[nodiscard]] friend constexpr bool operator==(const plane &p, const plane &q)
    {
        return p.a == q.a && p.b == q.b && p.c == q.c && p.d == q.d;
    }
    /** Inequality by value. */
    [[nodiscard]] friend constexpr bool operator!=(const plane &p, const plane &q)
    {
        return !(p == q);
    }
};

/** A triangle of a mesh, made ready for rays and lines. */
struct triangle : KXTriangle {
    /** No triangle: nothing hits it. */
    constexpr triangle() : KXTriangle{} {}
    /** From the record. */
    constexpr explicit triangle(const KXTriangle &record) : KXTriangle(record) {}

    /** With its plane, begun at the corner that serves best; nothing if it is too small or too flat
     * to be hit: kx_triangle. */
    template <typename Triangle = triangle>
    [[nodiscard]] static std::optional<Triangle> of(const point3 *vertices, std::uint32_t first,
                                                    std::uint32_t second, std::uint32_t third)
    {
        std::optional<Triangle> out{std::in_place};
        if (kx_triangle(vertices, first, second, third, &*out) != 0) {
            out.reset();
        }
        return out;
    }

    /** Index of a corner's vertex; the corner is 0, 1 or 2, in the order of this record. */
    [[nodiscard]] constexpr std::uint32_t vertex(int index) const { return corner[index].vertex; }
    /** The plane. */
    [[nodiscard]] constexpr kxm::plane plane() const { return kxm::plane(KXTriangle::plane); }
    /** The barycentric coordinates of a point of it; nothing if it has no area:
     * kx_barycentric. */
    template <typename Weights = std::array<float, 3>>
    [[nodiscard]] std::optional<Weights> barycentric(const point3 *vertices, const point3 &p) const
    {
        std::optional<Weights> weights{std::in_place};
        if (kx_barycentric(this, vertices, &p, weights->data()) != 0) {
            weights.reset();
        }
        return weights;
    }
};

/** A finite, directed line. */
struct line : KXLine {
    /** At the origin, of no length. */
    constexpr line() : KXLine{} {}
    /** By its ends. */
    constexpr line(const point3 &from, const point3 &to) : KXLine{from, to} {}
    /** From the record. */
    constexpr explicit line(const KXLine &record) : KXLine(record) {}
    /** @cond */
    explicit line(detail::Unset) {}
    /** @endcond */

    /** The point at t = 0. */
    [[nodiscard]] constexpr point3 start() const { return point3(KXLine::start); }
    /** The point at t = 1. */
    [[nodiscard]] constexpr point3 end() const { return point3(KXLine::end); }
    /** How far along it a point is: kx_line_parameter. */
    [[nodiscard]] double parameter(const point3 &p) const { return kx_line_parameter(this, &p); }
    /** Where it meets a box first, if it does: KXLineIxBox. */
    template <typename Point = point3>
    [[nodiscard]] std::optional<Point> hit(const box &b) const
    {
        return detail::if_hit<Point>(KXLineIxBox, this, &b);
    }
    /** Whether it meets a box: KXLineIxBox. */
    [[nodiscard]] bool meets(const box &b) const { return KXLineIxBox(this, &b, nullptr) != 0; }
    /** Where it passes through a triangle, if it does: KXLineIxTriangle. */
    template <typename Point = point3>
    [[nodiscard]] std::optional<Point> hit(const triangle &t, const point3 *vertices) const
    {
        return detail::if_hit<Point>(KXLineIxTriangle, this, &t, vertices);
    }

    /** The line transformed: KXTransformLine. */
    [[nodiscard]] friend line operator*(const mat4 &m, const line &l)
    {
        return detail::result<line>(KXTransformLine, &l, &m);
    }
    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const line &a, const line &b)
    {
        return a.start() == b.start() && a.end() == b.end();
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const line &a, const line &b) { return !(a == b); }
};

/** A half line. */
struct ray : KXRay {
    /** At the origin, of no direction. */
    constexpr ray() : KXRay{} {}
    /** By its origin and its direction, of any length. */
    constexpr ray(const point3 &from, const vec3 &towards) : KXRay{from, towards} {}
    /** From the record. */
    constexpr explicit ray(const KXRay &record) : KXRay(record) {}
    /** @cond */
    explicit ray(detail::Unset) {}
    /** @endcond */

    /** The point at t = 0. */
    [[nodiscard]] constexpr point3 origin() const { return point3(KXRay::origin); }
    /** The step for t = 1. */
    [[nodiscard]] constexpr vec3 direction() const { return vec3(KXRay::direction); }
    /** The point at t: origin + t*direction, rounded once. */
    [[nodiscard]] point3 at(float t) const
    {
        point3 p{detail::Unset()};
        KXV3Combine(&(KXRay::origin), &(KXRay::direction), &p, 1.0f, t);
        return p;
    }
    /** How far along it a point is: kx_ray_parameter. */
    [[nodiscard]] double parameter(const point3 &p) const { return kx_ray_parameter(this, &p); }
    /** Distance of a point from its line, times its direction's length: KXRayPointDistance. */
    [[nodiscard]] double distance(const point3 &p) const { return KXRayPointDistance(this, &p); }
    /** Where it meets a box, from inside where it leaves it, if it does: KXRayIxBox. */
    template <typename Point = point3>
    [[nodiscard]] std::optional<Point> hit(const box &b) const
    {
        return detail::if_hit<Point>(KXRayIxBox, this, &b);
    }
    /** Whether it meets a box: KXRayIxBox. */
    [[nodiscard]] bool meets(const box &b) const { return KXRayIxBox(this, &b, nullptr) != 0; }
    /** Where it passes through a triangle, if it does: KXRayIxTriangle. */
    template <typename Point = point3>
    [[nodiscard]] std::optional<Point> hit(const triangle &t, const point3 *vertices) const
    {
        return detail::if_hit<Point>(KXRayIxTriangle, this, &t, vertices);
    }

    /** The ray transformed, its direction made unit length: KXTransformRay. */
    [[nodiscard]] friend ray operator*(const mat4 &m, const ray &r)
    {
        return detail::result<ray>(KXTransformRay, &r, &m);
    }
    /** Equality by value. */
    [[nodiscard]] friend bool operator==(const ray &a, const ray &b)
    {
        return a.origin() == b.origin() && a.direction() == b.direction();
    }
    /** Inequality by value. */
    [[nodiscard]] friend bool operator!=(const ray &a, const ray &b) { return !(a == b); }
};

/** Range, elevation and azimuth; angles in radians. */
struct polar_coordinates {
    float range;     /**< The distance. */
    float elevation; /**< The angle above the ground, in radians. */
    float azimuth;   /**< From +Z towards +X, in radians. */
};

/** A direction by two angles in radians. */
struct direction_angles {
    float elevation; /**< The angle above the ground, in radians. */
    float azimuth;   /**< From +Z towards +X, in radians. */
};

/** A point as it is seen from another: KXPointsToREA. */
[[nodiscard]] inline polar_coordinates polar(const point3 &from, const point3 &to)
{
    polar_coordinates out;
    KXPointsToREA(&from, &to, &out.range, &out.elevation, &out.azimuth);
    return out;
}

/** The angles of a vector: KXVectorToEA. */
[[nodiscard]] inline direction_angles polar(const vec3 &v)
{
    direction_angles out;
    KXVectorToEA(&v, &out.elevation, &out.azimuth);
    return out;
}

/** Distance on the ground, in double: KXRange. */
[[nodiscard]] inline double range(const point3 &a, const point3 &b)
{
    return KXRange(&a, &b);
}

/** Bearing of a point as seen from another, in radians: KXBearing. */
[[nodiscard]] inline double bearing(const point3 &of, const point3 &seen_from)
{
    return KXBearing(&of, &seen_from);
}

/** The placement of a camera, and its inverse, the view. */
struct viewpoint {
    mat4 placement; /**< From the camera's space to the world. */
    mat4 view;      /**< From the world to the camera's space. */
    bool is_chosen; /**< The direction was undefined, and one was chosen: kx_look_at. */
};

/** A camera at a point, looking at another along its -Z, X to the right, Y up: kx_look_at. */
[[nodiscard]] inline viewpoint look_at(const point3 &eye, const point3 &target,
                                       const vec3 &up = vec3(0.0f, 1.0f, 0.0f))
{
    viewpoint out{mat4(detail::Unset()), mat4(detail::Unset()), false};
    out.is_chosen = kx_look_at(&eye, &target, &up, &out.placement, &out.view) != 0;
    return out;
}

/** A perspective projection; the field of view from bottom to top, in radians: kx_perspective. */
[[nodiscard]] inline mat4 perspective(float field_of_view, float aspect, float nearest,
                                      float farthest, depth range)
{
    return detail::result<mat4>(kx_perspective, field_of_view, aspect, nearest, farthest,
                                static_cast<KXDepthRange>(range));
}

/** An orthographic projection: kx_orthographic. */
[[nodiscard]] inline mat4 orthographic(float left, float right, float bottom, float top,
                                       float nearest, float farthest, depth range)
{
    return detail::result<mat4>(kx_orthographic, left, right, bottom, top, nearest, farthest,
                                static_cast<KXDepthRange>(range));
}

/** The ray through a place in a camera's picture, columns from the left, rows from the top:
 * kx_screen_to_ray. */
[[nodiscard]] inline ray screen_to_ray(const mat4 &projection, const mat4 &placement, float column,
                                       float row, float width, float height)
{
    return detail::result<ray>(kx_screen_to_ray, &projection, &placement, column, row, width,
                               height);
}

/** @cond */
namespace detail
{

inline void transform(const mat3 &m, std::uint32_t count, const vec2 *in, vec2 *out)
{
    KXM3NP2I0(&m, count, in, out);
}
inline void transform(const mat3 &m, std::uint32_t count, const point2 *in, point2 *out)
{
    KXM3NP2I1(&m, count, in, out);
}
inline void transform(const mat4 &m, std::uint32_t count, const vec3 *in, vec3 *out)
{
    KXM4NP3I0(&m, count, in, out);
}
inline void transform(const mat4 &m, std::uint32_t count, const point3 *in, point3 *out)
{
    KXM4NP3I1(&m, count, in, out);
}
inline void transform(const mat4 &m, std::uint32_t count, const point4 *in, point4 *out)
{
    KXM4NP4(&m, count, in, out);
}
inline void convert(KXUnit from, KXUnit to, std::uint32_t count, point3 *points)
{
    KXP3ChangeNUnits(from, to, count, points);
}
inline void convert(KXUnit from, KXUnit to, std::uint32_t count, point4 *points)
{
    KXP4ChangeNUnits(from, to, count, points);
}
inline void convert(KXUnit from, KXUnit to, std::uint32_t count, plane *planes)
{
    KXPlaneChangeNUnits(from, to, count, planes);
}

} // namespace detail
/** @endcond */

/**
 * Each element of an array times a matrix, as m * element: KXM4NP3I1 and its like. The arrays may
 * be one, and must not overlap otherwise.
 */
template <typename Matrix, typename Element>
void transform(const Matrix &m, const Element *in, std::size_t count, Element *out)
{
    detail::in_parts(count, [&](std::size_t done, std::uint32_t part) {
        detail::transform(m, part, in + done, out + done);
    });
}

/** Each element of an array times a matrix, in place. */
template <typename Matrix, typename Element>
void transform(const Matrix &m, Element *elements, std::size_t count)
{
    transform(m, elements, count, elements);
}

/** Each element of an array of points, homogeneous points or planes in another length unit, in
 * place: KXP3ChangeNUnits and its like. */
template <typename Element>
void convert(Element *elements, std::size_t count, unit from, unit to)
{
    detail::in_parts(count, [&](std::size_t done, std::uint32_t part) {
        detail::convert(static_cast<KXUnit>(from), static_cast<KXUnit>(to), part, elements + done);
    });
}

#if __cplusplus >= 202002L
/** Each element of a contiguous range times a matrix; out has room for as many, and may be in. */
template <typename Matrix, typename In, typename Out>
auto transform(const Matrix &m, const In &in, Out &&out)
    -> decltype(std::span(in), std::span(out), void())
{
    transform(m, std::span(in).data(), std::span(in).size(), std::span(out).data());
}

/** Each element of a contiguous range times a matrix, in place. */
template <typename Matrix, typename Range>
auto transform(const Matrix &m, Range &&elements) -> decltype(std::span(elements), void())
{
    transform(m, std::span(elements).data(), std::span(elements).size());
}

/** Each element of a contiguous range in another length unit, in place. */
template <typename Range>
auto convert(Range &&elements, unit from, unit to) -> decltype(std::span(elements), void())
{
    convert(std::span(elements).data(), std::span(elements).size(), from, to);
}
#endif

/** @cond */
namespace detail
{

template <typename Value, typename Record>
constexpr bool
    is_record = sizeof(Value) == sizeof(Record) && alignof(Value) == alignof(Record) &&
                std::is_base_of<Record, Value>::value &&std::is_standard_layout<Value>::value
                    &&std::is_trivially_copyable<Value>::value;

static_assert(is_record<vec2, KXP2> && is_record<point2, KXP2> && is_record<vec3, KXV3> &&
                  is_record<point3, KXP3> && is_record<point4, KXP4> && is_record<quat, KXQuat> &&
                  is_record<mat3, KXM3> && is_record<mat4, KXM4> &&
                  is_record<position, KXPosition> && is_record<components, KXComponents> &&
                  is_record<box, KXBox> && is_record<plane, KXPlane> && is_record<line, KXLine> &&
                  is_record<ray, KXRay> && is_record<triangle, KXTriangle>,
              "a value is its C record, and nothing else");

} // namespace detail
/** @endcond */

} // namespace kxm

#endif
