/* This library's kernels: calls through the exports of the built module, as a host makes them. */
#include "work.h"

#include <kxmaths5.h>
#include <kxmaths5/everyday.h>

namespace
{

/** Each group's points by one call. */
template <auto Call, typename Point>
void points(const Work &work)
{
    for (std::size_t group = 0; group < work.groups; ++group) {
        const std::size_t begin = group * work.count;
        Call(static_cast<const KXM4 *>(work.in[1]) + group, static_cast<uint32_t>(work.count),
             static_cast<const Point *>(work.in[0]) + begin,
             static_cast<Point *>(work.out) + begin);
    }
}

constexpr auto product = [](KXM4 &out, const KXM4 &a, const KXM4 &b) { KXM4Mult(&a, &b, &out); };
constexpr auto inverse = [](KXM4 &out, const KXM4 &matrix) { KXM4Inverse(&matrix, &out); };

} // namespace

constinit const Kernel kernels_of_kxmaths5[] = {
    {"add",
     each([](KXV3 &out, const KXV3 &a, const KXV3 &b) { KXV3Combine(&a, &b, &out, 1.0f, 1.0f); })},
    {"scale", each([](KXV3 &out, const KXV3 &v, const float &factor) {
         KXV3Combine(&v, &v, &out, factor, 0.0f);
     })},
    {"dot", each([](float &out, const KXV3 &a, const KXV3 &b) {
         out = static_cast<float>(kx_dot(&a, &b));
     })},
    {"cross", each([](KXV3 &out, const KXV3 &a, const KXV3 &b) { KXV3Cross(&a, &b, &out); })},
    {"length", each([](float &out, const KXV3 &v) { out = static_cast<float>(KXV3Length(&v)); })},
    {"points_xyz", points<KXM4NP3I1, KXP3>},
    {"points_xyzw", points<KXM4NP4, KXP4>},
    {"point",
     each([](KXP3 &out, const KXP3 &in, const KXM4 &matrix) { KXM4P3I1(&matrix, &in, &out); })},
    {"product", each(product)},
    {"product_chain", chain(product)},
    {"inverse_affine", each(inverse)},
    {"inverse_general", each(inverse)},
    {"determinant", each([](float &out, const KXM4 &matrix) {
         out = static_cast<float>(KXM4Determinant(&matrix));
     })},
    {"orientation", each([](KXM4 &out, const KXV3 &angles) {
         KXM4Orientation(&out, nullptr, angles.x, angles.y, angles.z, KX_ORDER_XYZ);
     })},
    {"box_transform", each([](KXBox &out, const KXBox &box, const KXM4 &matrix) {
         KXTransformBox(&box, &matrix, &out);
     })},
    {"ray_box", rays([](Hit &out, const KXRay &ray, const KXBox &box) {
         out.hit = KXRayIxBox(&ray, &box, &out.point);
     })},
    {"ray_triangle",
     rays([](Hit &out, const KXRay &ray, const KXTriangle &triangle, const KXP3 &vertices) {
         out.hit = KXRayIxTriangle(&ray, &triangle, &vertices, &out.point);
     })},
    {},
};
