/* cglm's kernels: calls into its shared library. It takes no const; nothing is written through. */
#include "kernels.h"

#include <cglm/call.h>

#include <stdbool.h>

static void points_xyz(const Work *work)
{
    vec3 *in = (vec3 *)work->first;
    vec3 *out = (vec3 *)work->out;
    for (size_t group = 0; group < work->groups; ++group) {
        vec4 *matrix = ((mat4 *)work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            glmc_mat4_mulv3(matrix, in[i], 1.0f, out[i]);
        }
    }
}

static void points_xyzw(const Work *work)
{
    vec4 *in = (vec4 *)work->first;
    vec4 *out = (vec4 *)work->out;
    for (size_t group = 0; group < work->groups; ++group) {
        vec4 *matrix = ((mat4 *)work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            glmc_mat4_mulv(matrix, in[i], out[i]);
        }
    }
}

static void point(const Work *work)
{
    vec3 *points = (vec3 *)work->first;
    mat4 *matrices = (mat4 *)work->second;
    vec3 *out = (vec3 *)work->out;
    for (size_t i = 0; i < work->count; ++i) {
        glmc_mat4_mulv3(matrices[i], points[i], 1.0f, out[i]);
    }
}

static void product(const Work *work)
{
    mat4 *a = (mat4 *)work->first;
    mat4 *b = (mat4 *)work->second;
    mat4 *out = (mat4 *)work->out;
    for (size_t i = 0; i < work->count; ++i) {
        glmc_mat4_mul(a[i], b[i], out[i]);
    }
}

static void product_chain(const Work *work)
{
    mat4 *links = (mat4 *)work->first;
    mat4 *out = (mat4 *)work->out;
    glmc_mat4_copy(links[0], out[0]);
    for (size_t i = 1; i < work->count; ++i) {
        glmc_mat4_mul(out[i - 1], links[i], out[i]);
    }
}

static void inverse_general(const Work *work)
{
    mat4 *matrices = (mat4 *)work->first;
    mat4 *out = (mat4 *)work->out;
    for (size_t i = 0; i < work->count; ++i) {
        glmc_mat4_inv(matrices[i], out[i]);
    }
}

static void determinant(const Work *work)
{
    mat4 *matrices = (mat4 *)work->first;
    float *out = (float *)work->out;
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = glmc_mat4_det(matrices[i]);
    }
}

static void orientation(const Work *work)
{
    vec3 *angles = (vec3 *)work->first;
    mat4 *out = (mat4 *)work->out;
    for (size_t i = 0; i < work->count; ++i) {
        glmc_euler_xyz(angles[i], out[i]);
    }
}

static void box_transform(const Work *work)
{
    vec3(*boxes)[2] = (vec3(*)[2])work->first;
    mat4 *matrices = (mat4 *)work->second;
    vec3(*out)[2] = (vec3(*)[2])work->out;
    for (size_t i = 0; i < work->count; ++i) {
        glmc_aabb_transform(boxes[i], matrices[i], out[i]);
    }
}

static const Kernel kernels[] = {
    {"points_xyz", points_xyz},
    {"points_xyzw", points_xyzw},
    {"point", point},
    {"product", product},
    {"product_chain", product_chain},
    {"inverse_general", inverse_general},
    {"determinant", determinant},
    {"orientation", orientation},
    {"box_transform", box_transform},
    {NULL, NULL},
};

BENCH_EXPORT const Kernel *kernels_of_cglm(void)
{
    return kernels;
}
