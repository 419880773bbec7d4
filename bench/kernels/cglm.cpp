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

void point(Point &out, Point &in, Matrix &matrix)
{
    glmc_mat4_mulv3(matrix.m, in.v, 1.0f, out.v);
}

void homogeneous(Homogeneous &out, Homogeneous &in, Matrix &matrix)
{
    glmc_mat4_mulv(matrix.m, in.v, out.v);
}

void product(Matrix &out, Matrix &a, Matrix &b)
{
    glmc_mat4_mul(a.m, b.m, out.m);
}

void inverse(Matrix &out, Matrix &matrix)
{
    glmc_mat4_inv(matrix.m, out.m);
}

void determinant(float &out, Matrix &matrix)
{
    out = glmc_mat4_det(matrix.m);
}

void orientation(Matrix &out, Point &angles)
{
    glmc_euler_xyz(angles.v, out.m);
}

void box_transform(Box &out, Box &box, Matrix &matrix)
{
    glmc_aabb_transform(box.ends, matrix.m, out.ends);
}

const Kernel kernels[] = {
    {"points_xyz", Each<point>::group},
    {"points_xyzw", Each<homogeneous>::group},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_general", Each<inverse>::record},
    {"determinant", Each<determinant>::record},
    {"orientation", Each<orientation>::record},
    {"box_transform", Each<box_transform>::record},
    {},
};

} // namespace

BENCH_TABLE(cglm)
{
    return kernels;
}
