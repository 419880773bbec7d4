/* Eigen's kernels, inlined as in its users' programs. */
#include "array.h"
#include "kernels.h"

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

void points_xyz(const Work *work)
{
    const Vector3f *in = array<Vector3f>(work->first);
    Vector3f *out = array<Vector3f>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        // A copy, so that no store to the results could change it.
        const Affine3f matrix = array<Affine3f>(work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            out[i] = matrix * in[i];
        }
    }
}

void points_xyzw(const Work *work)
{
    const Vector4f *in = array<Vector4f>(work->first);
    Vector4f *out = array<Vector4f>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        const Matrix4f matrix = array<Matrix4f>(work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            out[i].noalias() = matrix * in[i];
        }
    }
}

void point(const Work *work)
{
    const Vector3f *points = array<Vector3f>(work->first);
    const Affine3f *matrices = array<Affine3f>(work->second);
    Vector3f *out = array<Vector3f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i] * points[i];
        keep(&out[i]);
    }
}

void product(const Work *work)
{
    const Matrix4f *a = array<Matrix4f>(work->first);
    const Matrix4f *b = array<Matrix4f>(work->second);
    Matrix4f *out = array<Matrix4f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i].noalias() = a[i] * b[i];
        keep(&out[i]);
    }
}

void product_chain(const Work *work)
{
    const Matrix4f *links = array<Matrix4f>(work->first);
    Matrix4f *out = array<Matrix4f>(work->out);
    out[0] = links[0];
    for (size_t i = 1; i < work->count; ++i) {
        out[i].noalias() = out[i - 1] * links[i];
    }
}

void inverse_affine(const Work *work)
{
    const Affine3f *matrices = array<Affine3f>(work->first);
    Affine3f *out = array<Affine3f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i].inverse(Eigen::Affine);
        keep(&out[i]);
    }
}

void inverse_general(const Work *work)
{
    const Matrix4f *matrices = array<Matrix4f>(work->first);
    Matrix4f *out = array<Matrix4f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i].inverse();
        keep(&out[i]);
    }
}

void determinant(const Work *work)
{
    const Matrix4f *matrices = array<Matrix4f>(work->first);
    float *out = array<float>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i].determinant();
        keep(&out[i]);
    }
}

void box_transform(const Work *work)
{
    const AlignedBox3f *boxes = array<AlignedBox3f>(work->first);
    const Affine3f *matrices = array<Affine3f>(work->second);
    AlignedBox3f *out = array<AlignedBox3f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = boxes[i].transformed(matrices[i]);
        keep(&out[i]);
    }
}

const Kernel kernels[] = {
    {"points_xyz", points_xyz},
    {"points_xyzw", points_xyzw},
    {"point", point},
    {"product", product},
    {"product_chain", product_chain},
    {"inverse_affine", inverse_affine},
    {"inverse_general", inverse_general},
    {"determinant", determinant},
    {"box_transform", box_transform},
    {nullptr, nullptr},
};

} // namespace

BENCH_EXPORT const Kernel *kernels_of_eigen()
{
    return kernels;
}
