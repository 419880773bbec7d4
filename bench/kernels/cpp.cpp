/* This library's kernels through its C++ face. */
#include "work.h"

#include <kxmaths5.hpp>

namespace
{

using namespace kxm;

void add(vec3 &out, const vec3 &a, const vec3 &b)
{
    out = a + b;
}

void scale(vec3 &out, const vec3 &v, const float &factor)
{
    out = v * factor;
}

void dot_product(float &out, const vec3 &a, const vec3 &b)
{
    out = static_cast<float>(dot(a, b));
}

void cross_product(vec3 &out, const vec3 &a, const vec3 &b)
{
    out = cross(a, b);
}

void length(float &out, const vec3 &v)
{
    out = static_cast<float>(v.length());
}

template <typename Point>
void points(const Work &work)
{
    for (std::size_t group = 0; group < work.groups; ++group) {
        const std::size_t begin = group * work.count;
        transform(static_cast<const mat4 *>(work.in[1])[group],
                  static_cast<const Point *>(work.in[0]) + begin, work.count,
                  static_cast<Point *>(work.out) + begin);
    }
}

void point(point3 &out, const point3 &in, const mat4 &matrix)
{
    out = matrix * in;
}

void product(mat4 &out, const mat4 &a, const mat4 &b)
{
    out = a * b;
}

void inverse(mat4 &out, const mat4 &matrix)
{
    if (const auto found = matrix.inverse()) {
        out = *found;
    }
}

void determinant(float &out, const mat4 &matrix)
{
    out = static_cast<float>(matrix.determinant());
}

void box_transform(box &out, const box &in, const mat4 &matrix)
{
    out = matrix * in;
}

void store(Hit &out, const std::optional<point3> &point)
{
    out.hit = point.has_value();
    if (point) {
        out.point = *point;
    }
}

void ray_box(Hit &out, const ray &r, const box &b)
{
    store(out, r.hit(b));
}

void ray_triangle(Hit &out, const ray &r, const triangle &t, const point3 &vertices)
{
    store(out, r.hit(t, &vertices));
}

const Kernel kernels[] = {
    {"add", Each<add>::record},
    {"scale", Each<scale>::record},
    {"dot", Each<dot_product>::record},
    {"cross", Each<cross_product>::record},
    {"length", Each<length>::record},
    {"points_xyz", points<point3>},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_affine", Each<inverse>::record},
    {"inverse_general", Each<inverse>::record},
    {"determinant", Each<determinant>::record},
    {"box_transform", Each<box_transform>::record},
    {"ray_box", Each<ray_box>::ray},
    {"ray_triangle", Each<ray_triangle>::ray},
    {},
};

} // namespace

BENCH_TABLE(cpp)
{
    return kernels;
}
