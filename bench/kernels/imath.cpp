/*
 * Imath's kernels, inlined as in its users' programs. Imath multiplies row vectors from the left,
 * so it takes the transposed matrices as they lie in memory, and a product's factors change places.
 */
#include "array.h"
#include "kernels.h"

#include <ImathBoxAlgo.h>
#include <ImathLine.h>
#include <ImathMatrix.h>
#include <ImathVec.h>

namespace
{

using Imath::Box3f;
using Imath::Line3f;
using Imath::M44f;
using Imath::V3f;
static_assert(sizeof(V3f) == 12 && sizeof(M44f) == 64 && sizeof(Box3f) == 24 &&
                  sizeof(Line3f) == 24,
              "records of the arrays' sizes");

void points_xyz(const Work *work)
{
    const V3f *in = array<V3f>(work->first);
    V3f *out = array<V3f>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        // A copy, so that no store to the results could change it.
        const M44f matrix = array<M44f>(work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            out[i] = in[i] * matrix;
        }
    }
}

void point(const Work *work)
{
    const V3f *points = array<V3f>(work->first);
    const M44f *matrices = array<M44f>(work->second);
    V3f *out = array<V3f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = points[i] * matrices[i];
        keep(&out[i]);
    }
}

void product(const Work *work)
{
    const M44f *a = array<M44f>(work->first);
    const M44f *b = array<M44f>(work->second);
    M44f *out = array<M44f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = b[i] * a[i];
        keep(&out[i]);
    }
}

void product_chain(const Work *work)
{
    const M44f *links = array<M44f>(work->first);
    M44f *out = array<M44f>(work->out);
    out[0] = links[0];
    for (size_t i = 1; i < work->count; ++i) {
        out[i] = links[i] * out[i - 1];
    }
}

void inverse(const Work *work)
{
    const M44f *matrices = array<M44f>(work->first);
    M44f *out = array<M44f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i].inverse();
        keep(&out[i]);
    }
}

void determinant(const Work *work)
{
    const M44f *matrices = array<M44f>(work->first);
    float *out = array<float>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = matrices[i].determinant();
        keep(&out[i]);
    }
}

void box_transform(const Work *work)
{
    const Box3f *boxes = array<Box3f>(work->first);
    const M44f *matrices = array<M44f>(work->second);
    Box3f *out = array<Box3f>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        Imath::affineTransform(boxes[i], matrices[i], out[i]);
        keep(&out[i]);
    }
}

void ray_box(const Work *work)
{
    const Line3f *rays = array<Line3f>(work->first);
    const Box3f *boxes = array<Box3f>(work->second);
    Hit *out = array<Hit>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        V3f contact;
        const bool hit = Imath::intersects(boxes[i % target_count], rays[i], contact);
        out[i].hit = hit;
        if (hit) {
            out[i].point = {contact.x, contact.y, contact.z};
        }
        keep(&out[i]);
    }
}

const Kernel kernels[] = {
    {"points_xyz", points_xyz},   {"point", point},
    {"product", product},         {"product_chain", product_chain},
    {"inverse_affine", inverse},  {"inverse_general", inverse},
    {"determinant", determinant}, {"box_transform", box_transform},
    {"ray_box", ray_box},         {nullptr, nullptr},
};

} // namespace

BENCH_EXPORT const Kernel *kernels_of_imath()
{
    return kernels;
}
