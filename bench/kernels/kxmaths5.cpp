/* This library's kernels: calls through the exports of the built module, as a host makes them. */
#include "array.h"
#include "kernels.h"

#include <kxmaths5.h>

namespace
{

void points_xyz(const Work *work)
{
    const KXM4 *matrices = array<KXM4>(work->second);
    const KXP3 *in = array<KXP3>(work->first);
    KXP3 *out = array<KXP3>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        const size_t begin = group * work->count;
        KXM4NP3I1(&matrices[group], static_cast<uint32_t>(work->count), in + begin, out + begin);
    }
}

void points_xyzw(const Work *work)
{
    const KXM4 *matrices = array<KXM4>(work->second);
    const KXP4 *in = array<KXP4>(work->first);
    KXP4 *out = array<KXP4>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        const size_t begin = group * work->count;
        KXM4NP4(&matrices[group], static_cast<uint32_t>(work->count), in + begin, out + begin);
    }
}

void point(const Work *work)
{
    const KXP3 *points = array<KXP3>(work->first);
    const KXM4 *matrices = array<KXM4>(work->second);
    KXP3 *out = array<KXP3>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        KXM4P3I1(&matrices[i], &points[i], &out[i]);
    }
}

void product(const Work *work)
{
    const KXM4 *a = array<KXM4>(work->first);
    const KXM4 *b = array<KXM4>(work->second);
    KXM4 *out = array<KXM4>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        KXM4Mult(&a[i], &b[i], &out[i]);
    }
}

void product_chain(const Work *work)
{
    const KXM4 *links = array<KXM4>(work->first);
    KXM4 *out = array<KXM4>(work->out);
    out[0] = links[0];
    for (size_t i = 1; i < work->count; ++i) {
        KXM4Mult(&out[i - 1], &links[i], &out[i]);
    }
}

void inverse(const Work *work)
{
    const KXM4 *matrices = array<KXM4>(work->first);
    KXM4 *out = array<KXM4>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        KXM4Inverse(&matrices[i], &out[i]);
    }
}

void determinant(const Work *work)
{
    const KXM4 *matrices = array<KXM4>(work->first);
    float *out = array<float>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = static_cast<float>(KXM4Determinant(&matrices[i]));
    }
}

void orientation(const Work *work)
{
    const KXV3 *angles = array<KXV3>(work->first);
    KXM4 *out = array<KXM4>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        KXM4Orientation(&out[i], nullptr, angles[i].x, angles[i].y, angles[i].z, KX_ORDER_XYZ);
    }
}

void box_transform(const Work *work)
{
    const KXBox *boxes = array<KXBox>(work->first);
    const KXM4 *matrices = array<KXM4>(work->second);
    KXBox *out = array<KXBox>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        KXTransformBox(&boxes[i], &matrices[i], &out[i]);
    }
}

void ray_box(const Work *work)
{
    const KXRay *rays = array<KXRay>(work->first);
    const KXBox *boxes = array<KXBox>(work->second);
    Hit *out = array<Hit>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i].hit = KXRayIxBox(&rays[i], &boxes[i % target_count], &out[i].point);
    }
}

void ray_triangle(const Work *work)
{
    const KXRay *rays = array<KXRay>(work->first);
    const KXTriangle *triangles = array<KXTriangle>(work->second);
    const KXP3 *vertices = array<KXP3>(work->third);
    Hit *out = array<Hit>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i].hit =
            KXRayIxTriangle(&rays[i], &triangles[i % target_count], vertices, &out[i].point);
    }
}

const Kernel kernels[] = {
    {"points_xyz", points_xyz},
    {"points_xyzw", points_xyzw},
    {"point", point},
    {"product", product},
    {"product_chain", product_chain},
    {"inverse_affine", inverse},
    {"inverse_general", inverse},
    {"determinant", determinant},
    {"orientation", orientation},
    {"box_transform", box_transform},
    {"ray_box", ray_box},
    {"ray_triangle", ray_triangle},
    {nullptr, nullptr},
};

} // namespace

BENCH_EXPORT const Kernel *kernels_of_kxmaths5()
{
    return kernels;
}
