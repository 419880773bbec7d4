/* cglm's kernels: calls into its shared library, which takes no const. */
#include "work.h"

#include <cglm/call.h>

namespace
{

/* Its types are arrays, which C++ doesn't copy. */
struct Matrix {
    mat4 m;
};
struct Point {
    vec3 v;
};
struct Homogeneous {
    vec4 v;
};
struct Box {
    vec3 ends[2];
};

constexpr auto point = [](Point &out, Point &in, Matrix &matrix) {
    glmc_mat4_mulv3(matrix.m, in.v, 1.0f, out.v);
};
constexpr auto product = [](Matrix &out, Matrix &a, Matrix &b) { glmc_mat4_mul(a.m, b.m, out.m); };

} // namespace

constinit const Kernel kernels_of_cglm[] = {
    {"points_xyz", arrays(point)},
    {"points_xyzw", arrays([](Homogeneous &out, Homogeneous &in, Matrix &matrix) {
         glmc_mat4_mulv(matrix.m, in.v, out.v);
     })},
    {"point", each(point)},
    {"product", each(product)},
    {"product_chain", chain(product)},
    {"inverse_general", each([](Matrix &out, Matrix &in) { glmc_mat4_inv(in.m, out.m); })},
    {"determinant", each([](float &out, Matrix &in) { out = glmc_mat4_det(in.m); })},
    {"orientation", each([](Matrix &out, Point &angles) { glmc_euler_xyz(angles.v, out.m); })},
    {"box_transform", each([](Box &out, Box &in, Matrix &matrix) {
         glmc_aabb_transform(in.ends, matrix.m, out.ends);
     })},
    {},
};
