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

void add(KXV3 &out, const KXV3 &a, const KXV3 &b)
{
    KXV3Combine(&a, &b, &out, 1.0f, 1.0f);
}

void scale(KXV3 &out, const KXV3 &v, const float &factor)
{
    KXV3Combine(&v, &v, &out, factor, 0.0f);
}

void dot(float &out, const KXV3 &a, const KXV3 &b)
{
    out = static_cast<float>(kx_dot(&a, &b));
}

void cross(KXV3 &out, const KXV3 &a, const KXV3 &b)
{
    KXV3Cross(&a, &b, &out);
}

void length(float &out, const KXV3 &v)
{
    out = static_cast<float>(KXV3Length(&v));
}

void point(KXP3 &out, const KXP3 &in, const KXM4 &matrix)
{
    KXM4P3I1(&matrix, &in, &out);
}

void product(KXM4 &out, const KXM4 &a, const KXM4 &b)
{
    KXM4Mult(&a, &b, &out);
}

void inverse(KXM4 &out, const KXM4 &matrix)
{
    KXM4Inverse(&matrix, &out);
}

void determinant(float &out, const KXM4 &matrix)
{
    out = static_cast<float>(KXM4Determinant(&matrix));
}

void orientation(KXM4 &out, const KXV3 &angles)
{
    KXM4Orientation(&out, nullptr, angles.x, angles.y, angles.z, KX_ORDER_XYZ);
}

void box_transform(KXBox &out, const KXBox &box, const KXM4 &matrix)
{
    KXTransformBox(&box, &matrix, &out);
}

void ray_box(Hit &out, const KXRay &ray, const KXBox &box)
{
    out.hit = KXRayIxBox(&ray, &box, &out.point);
}

void ray_triangle(Hit &out, const KXRay &ray, const KXTriangle &triangle, const KXP3 &vertices)
{
    out.hit = KXRayIxTriangle(&ray, &triangle, &vertices, &out.point);
}

const Kernel kernels[] = {
    {"add", Each<add>::record},
    {"scale", Each<scale>::record},
    {"dot", Each<dot>::record},
    {"cross", Each<cross>::record},
    {"length", Each<length>::record},
    {"points_xyz", points<KXM4NP3I1, KXP3>},
    {"points_xyzw", points<KXM4NP4, KXP4>},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_affine", Each<inverse>::record},
    {"inverse_general", Each<inverse>::record},
    {"determinant", Each<determinant>::record},
    {"orientation", Each<orientation>::record},
    {"box_transform", Each<box_transform>::record},
    {"ray_box", Each<ray_box>::ray},
    {"ray_triangle", Each<ray_triangle>::ray},
    {},
};

} // namespace

BENCH_TABLE(kxmaths5)
{
    return kernels;
}
