/* Transforms to be given to functions, made in double and rounded to singles. */
#ifndef KX_ACCURACY_TRANSFORMS_H
#define KX_ACCURACY_TRANSFORMS_H

#include "random.h"

namespace accuracy
{

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
