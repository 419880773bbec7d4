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

constexpr auto point = [](Vector3f &out, const Vector3f &in, const Affine3f &matrix) {
    out = matrix * in;
};
constexpr auto product = [](Matrix4f &out, const Matrix4f &a, const Matrix4f &b) {
    out.noalias() = a * b;
};

} // namespace

constinit const Kernel kernels_of_eigen[] = {
    {"points_xyz", arrays(point)},
    {"points_xyzw", arrays([](Vector4f &out, const Vector4f &in, const Matrix4f &matrix) {
         out.noalias() = matrix * in;
     })},
    {"point", each(point)},
    {"product", each(product)},
    {"product_chain", chain(product)},
    {"inverse_affine",
     each([](Affine3f &out, const Affine3f &matrix) { out = matrix.inverse(Eigen::Affine); })},
    {"inverse_general",
     each([](Matrix4f &out, const Matrix4f &matrix) { out = matrix.inverse(); })},
    {"determinant", each([](float &out, const Matrix4f &matrix) { out = matrix.determinant(); })},
    {"box_transform", each([](AlignedBox3f &out, const AlignedBox3f &in, const Affine3f &matrix) {
         out = in.transformed(matrix);
     })},
    {},
};
