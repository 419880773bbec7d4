/*
 * GLM's kernels, inlined as in its users' programs. Built twice: with GLM's defaults, and with
 * GLM_FORCE_INTRINSICS and the aligned types that it needs to have an effect.
 */
#include "work.h"

#include <glm/ext/matrix_transform.hpp>
#include <glm/glm.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtx/euler_angles.hpp>
#include <glm/gtx/intersect.hpp>

#ifdef GLM_FORCE_INTRINSICS
#include <glm/gtc/type_aligned.hpp>
static_assert(GLM_CONFIG_SIMD == GLM_ENABLE, "GLM would use no intrinsics");
using Matrix = glm::aligned_mat4;
using Homogeneous = glm::aligned_vec4;
#else
static_assert(GLM_CONFIG_SIMD == GLM_DISABLE, "this is to be GLM without intrinsics");
using Matrix = glm::mat4;
using Homogeneous = glm::vec4;
#endif
// Packed in both: arrays of points hold twelve bytes a point.
using Point = glm::vec3;
static_assert(sizeof(Point) == 12 && sizeof(Matrix) == 64, "records of the arrays' sizes");

namespace
{

void add(Point &out, const Point &a, const Point &b)
{
    out = a + b;
}

void scale(Point &out, const Point &v, const float &factor)
{
    out = v * factor;
}

void dot(float &out, const Point &a, const Point &b)
{
    out = glm::dot(a, b);
}

void cross(Point &out, const Point &a, const Point &b)
{
    out = glm::cross(a, b);
}

void length(float &out, const Point &v)
{
    out = glm::length(v);
}

void point(Point &out, const Point &in, const Matrix &matrix)
{
    out = Point(matrix * Homogeneous(in.x, in.y, in.z, 1.0f));
}

void homogeneous(Homogeneous &out, const Homogeneous &in, const Matrix &matrix)
{
    out = matrix * in;
}

void product(Matrix &out, const Matrix &a, const Matrix &b)
{
    out = a * b;
}

void inverse_affine(Matrix &out, const Matrix &matrix)
{
    out = glm::affineInverse(matrix);
}

void inverse_general(Matrix &out, const Matrix &matrix)
{
    out = glm::inverse(matrix);
}

/** Out of line, as a program gets it that doesn't inline what it calls in many places. */
[[gnu::noinline]] float determinant_of(const Matrix &matrix)
{
    return glm::determinant(matrix);
}

void determinant(float &out, const Matrix &matrix)
{
    out = determinant_of(matrix);
}

void orientation(glm::mat4 &out, const Point &angles)
{
    out = glm::eulerAngleXYZ(angles.x, angles.y, angles.z);
}

void ray_triangle(Hit &out, const KXRay &ray, const KXTriangle &triangle, const Point &vertices)
{
    const Point origin(ray.origin.x, ray.origin.y, ray.origin.z);
    const Point direction(ray.direction.x, ray.direction.y, ray.direction.z);
    const Point *const all = &vertices;
    glm::vec2 place;
    float distance;
    // GLM also reports triangles behind the origin; the data has none.
    out.hit = glm::intersectRayTriangle(origin, direction, all[triangle.corner[0].vertex],
                                        all[triangle.corner[1].vertex],
                                        all[triangle.corner[2].vertex], place, distance);
    if (out.hit) {
        const Point contact = origin + direction * distance;
        out.point = {contact.x, contact.y, contact.z};
    }
}

const Kernel kernels[] = {
    {"add", Each<add>::record},
    {"scale", Each<scale>::record},
    {"dot", Each<dot>::record},
    {"cross", Each<cross>::record},
    {"length", Each<length>::record},
    {"points_xyz", Each<point>::group},
    {"points_xyzw", Each<homogeneous>::group},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_affine", Each<inverse_affine>::record},
    {"inverse_general", Each<inverse_general>::record},
    {"determinant", Each<determinant>::record},
    {"orientation", Each<orientation>::record},
    {"ray_triangle", Each<ray_triangle>::ray},
    {},
};

} // namespace

#ifdef GLM_FORCE_INTRINSICS
BENCH_TABLE(glm_intrinsics)
#else
BENCH_TABLE(glm)
#endif
{
    return kernels;
}
