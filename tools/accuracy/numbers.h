/*
 * Numbers of 113 bits, in which the true values are worked out, with vectors and matrices of them;
 * and inputs from a seed, the same on every machine: no maths library takes part but a square root.
 */
#ifndef KX_ACCURACY_NUMBERS_H
#define KX_ACCURACY_NUMBERS_H

#include "kxmaths5.h"

#include <Eigen/Dense>
#include <quadmath.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

__extension__ typedef __float128 Quad;

template <>
struct Eigen::NumTraits<Quad> : Eigen::GenericNumTraits<Quad> {
    enum { IsComplex = 0, IsInteger = 0, IsSigned = 1, RequireInitialization = 0 };
    enum { ReadCost = 2, AddCost = 40, MulCost = 40 };
};

namespace accuracy
{

inline const Quad exact_pi = acosq(-1);

using Vector3 = Eigen::Matrix<Quad, 3, 1>;
using Vector4 = Eigen::Matrix<Quad, 4, 1>;
using Matrix3 = Eigen::Matrix<Quad, 3, 3>;
using Matrix4 = Eigen::Matrix<Quad, 4, 4>;

inline Vector3 wide(const KXV3 &v)
{
    return {v.x, v.y, v.z};
}
inline Vector4 wide(const KXP4 &p)
{
    return {p.x, p.y, p.z, p.w};
}
inline Matrix3 wide(const KXM3 &m)
{
    return Eigen::Matrix<float, 3, 3, Eigen::RowMajor>(&m.m[0][0]).cast<Quad>();
}
inline Matrix4 wide(const KXM4 &m)
{
    return Eigen::Matrix<float, 4, 4, Eigen::RowMajor>(&m.m[0][0]).cast<Quad>();
}
inline Matrix3 block(const KXM4 &m)
{
    return wide(m).topLeftCorner<3, 3>();
}
inline Vector3 translation(const KXM4 &m)
{
    return wide(m).topRightCorner<3, 1>();
}

inline Quad length(const Vector3 &v)
{
    return sqrtq(v.squaredNorm());
}

/** The largest magnitude among the elements. */
template <typename Derived>
Quad largest(const Eigen::MatrixBase<Derived> &elements)
{
    Quad result = 0;
    for (const Quad element : elements.reshaped()) {
        result = std::max(result, fabsq(element));
    }
    return result;
}

/** The step from one single to the next in the binade of a value. */
inline Quad ulp(Quad value)
{
    int exponent;
    frexpq(value, &exponent);
    return ldexpq(1, std::max(exponent - 24, -149));
}

/** The rotation by an angle about axis 0, 1 or 2. */
inline Matrix3 rotation_about(int axis, Quad angle)
{
    Quad sine, cosine;
    sincosq(angle, &sine, &cosine);
    const int j = (axis + 1) % 3, k = (axis + 2) % 3;
    Matrix3 m = Matrix3::Identity();
    m(j, j) = m(k, k) = cosine;
    m(j, k) = -sine;
    m(k, j) = sine;
    return m;
}

constexpr double pi = 3.14159265358979323846;

/** Next to a quarter turn an arcsine has half of the bits of its operand; up to here it has most.
 */
constexpr double clear_of_a_quarter_turn = 1.4;

class Random
{
public:
    explicit Random(std::uint64_t seed) : state(seed) {}

    /** SplitMix64. */
    std::uint64_t word()
    {
        std::uint64_t x = state += 0x9e3779b97f4a7c15U;
        x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
        x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
        return x ^ (x >> 31);
    }
    std::uint32_t below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>((word() >> 32) * limit >> 32);
    }

    /** Uniform between two bounds. */
    float between(double low, double high)
    {
        return static_cast<float>(low + (high - low) * std::ldexp(double(word() >> 11), -53));
    }
    /** Uniform up to a magnitude. */
    float uniform(double limit)
    {
        return between(-limit, limit);
    }
    /** Either sign, and a magnitude from 2^low to 2^high: each binade as often as any other. */
    float spread(int low, int high)
    {
        const int exponent = low + static_cast<int>(below(static_cast<std::uint32_t>(high - low)));
        const double magnitude = std::ldexp(double((1U << 23) + below(1U << 23)), exponent - 23);
        return static_cast<float>(below(2) == 0 ? magnitude : -magnitude);
    }

    KXV3 uniform_vector(double limit)
    {
        const float x = uniform(limit), y = uniform(limit), z = uniform(limit);
        return {x, y, z};
    }
    KXV3 spread_vector(int low, int high)
    {
        const float x = spread(low, high), y = spread(low, high), z = spread(low, high);
        return {x, y, z};
    }

    /** A unit vector, every direction alike. */
    template <int Size>
    Eigen::Matrix<double, Size, 1> direction()
    {
        Eigen::Matrix<double, Size, 1> v;
        double square;
        do {
            for (double &element : v) {
                element = static_cast<double>(uniform(1.0));
            }
            square = v.squaredNorm();
        } while (square < 0.01 || square > 1.0);
        return v / std::sqrt(square);
    }
    KXV3 unit_vector()
    {
        const Eigen::Vector3f v = direction<3>().cast<float>();
        return {v.x(), v.y(), v.z()};
    }

    /** Any rotation of space, every one alike. */
    Eigen::Matrix3d rotation()
    {
        return Eigen::Quaterniond(direction<4>()).toRotationMatrix();
    }

private:
    std::uint64_t state;
};

/* Transforms, made in double and rounded to singles. */

inline KXM3 single(const Eigen::Matrix3d &m)
{
    KXM3 result;
    Eigen::Map<Eigen::Matrix<float, 3, 3, Eigen::RowMajor>>(&result.m[0][0]) = m.cast<float>();
    return result;
}
inline KXM4 single(const Eigen::Matrix4d &m)
{
    KXM4 result;
    Eigen::Map<Eigen::Matrix<float, 4, 4, Eigen::RowMajor>>(&result.m[0][0]) = m.cast<float>();
    return result;
}

/** The transform with a block and a translation. */
inline KXM4 affine(const Eigen::Matrix3d &block, const KXV3 &translation)
{
    KXM4 m = single(Eigen::Matrix4d(Eigen::Matrix4d::Identity()));
    const KXM3 narrowed = single(block);
    const float column[3] = {translation.x, translation.y, translation.z};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            m.m[r][c] = narrowed.m[r][c];
        }
        m.m[r][3] = column[r];
    }
    return m;
}

/** Three scales of either sign, from 2^low to 2^high. */
inline Eigen::Vector3d scales(Random &random, int low, int high)
{
    const KXV3 s = random.spread_vector(low, high);
    return {double(s.x), double(s.y), double(s.z)};
}

/** Scaled along its own axes, then turned. */
inline Eigen::Matrix3d scaled_rotation(Random &random)
{
    const Eigen::Matrix3d rotation = random.rotation();
    return rotation * scales(random, -4, 4).asDiagonal();
}

/** Any block whose longest and shortest stretch differ by a factor of 64 at most. */
inline Eigen::Matrix3d conditioned_block(Random &random)
{
    const Eigen::Matrix3d first = random.rotation(), second = random.rotation();
    return first * scales(random, -3, 3).asDiagonal() * second;
}

/** The transform of the plane with a block and any translation. */
inline KXM3 placed_in_plane(Random &random, const Eigen::Matrix2d &block)
{
    Eigen::Matrix3d m = Eigen::Matrix3d::Identity();
    m.topLeftCorner<2, 2>() = block;
    m(0, 2) = double(random.uniform(1000));
    m(1, 2) = double(random.uniform(1000));
    return single(m);
}
inline Eigen::Matrix2d rotation_of_plane(Random &random)
{
    const Eigen::Vector2d turn = random.direction<2>();
    Eigen::Matrix2d m;
    m << turn.x(), -turn.y(), turn.y(), turn.x();
    return m;
}

} // namespace accuracy

#endif
