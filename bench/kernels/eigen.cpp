/* Eigen's kernels, inlined as in its users' programs. */
#include "work.h"

#include <Eigen/Geometry>
#include <Eigen/LU>

namespace
{

using Eigen::Affine3f;
using Eigen::AlignedBox3f;
using Eigen::Matrix4f;
using Eigen::Vector3f;
using Eigen::Vector4f;
static_assert(sizeof(Vector3f) == 12 && sizeof(Affine3f) == 64 && sizeof(AlignedBox3f) == 24,
              "records of the arrays' sizes");

void point(Vector3f &out, const Vector3f &in, const Affine3f &matrix)
{
    out = matrix * in;
}

void homogeneous(Vector4f &out, const Vector4f &in, const Matrix4f &matrix)
{
    out.noalias() = matrix * in;
}

void product(Matrix4f &out, const Matrix4f &a, const Matrix4f &b)
{
    out.noalias() = a * b;
}

void inverse_affine(Affine3f &out, const Affine3f &matrix)
{
    out = matrix.inverse(Eigen::Affine);
}

void inverse_general(Matrix4f &out, const Matrix4f &matrix)
{
    out = matrix.inverse();
}

void determinant(float &out, const Matrix4f &matrix)
{
    out = matrix.determinant();
}

void box_transform(AlignedBox3f &out, const AlignedBox3f &box, const Affine3f &matrix)
{
    out = box.transformed(matrix);
}

const Kernel kernels[] = {
    {"points_xyz", Each<point>::group},
    {"points_xyzw", Each<homogeneous>::group},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_affine", Each<inverse_affine>::record},
    {"inverse_general", Each<inverse_general>::record},
    {"determinant", Each<determinant>::record},
    {"box_transform", Each<box_transform>::record},
    {},
};

} // namespace

BENCH_TABLE(eigen)
{
    return kernels;
}
