/* Numbers of 113 bits, in which the true values are worked out, and vectors and matrices of them.
 */
#ifndef KX_ACCURACY_QUAD_H
#define KX_ACCURACY_QUAD_H

#include "kxmaths5.h"

#include <Eigen/Dense>
#include <quadmath.h>

#include <algorithm>

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

} // namespace accuracy

#endif
