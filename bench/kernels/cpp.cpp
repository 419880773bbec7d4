/* This library's kernels through its C++ face. */
#include "work.h"

#include <kxmaths5.hpp>

namespace
{

using namespace kxm;

constexpr auto product = [](mat4 &out, const mat4 &a, const mat4 &b) { out = a * b; };
constexpr auto inverse = [](mat4 &out, const mat4 &matrix) {
    if (const auto found = matrix.inverse()) {
        out = *found;
    }
};

void store(Hit &out, const std::optional<point3> &point)
{
    out.hit = point.has_value();
    if (point) {
        out.point = *point;
    }
}

} // namespace

constinit const Kernel kernels_of_cpp[] = {
    {"add", each([](vec3 &out, const vec3 &a, const vec3 &b) { out = a + b; })},
    {"scale", each([](vec3 &out, const vec3 &v, const float &factor) { out = v * factor; })},
    {"dot",
     each([](float &out, const vec3 &a, const vec3 &b) { out = static_cast<float>(dot(a, b)); })},
    {"cross", each([](vec3 &out, const vec3 &a, const vec3 &b) { out = cross(a, b); })},
    {"length", each([](float &out, const vec3 &v) { out = static_cast<float>(v.length()); })},
    {"point", each([](point3 &out, const point3 &in, const mat4 &matrix) { out = matrix * in; })},
    {"product", each(product)},
    {"inverse_affine", each(inverse)},
    {"inverse_general", each(inverse)},
    {"ray_box", rays([](Hit &out, const ray &r, const box &b) { store(out, r.hit(b)); })},
    {"ray_triangle", rays([](Hit &out, const ray &r, const triangle &t, const point3 &vertices) {
         store(out, r.hit(t, &vertices));
     })},
    {},
};
