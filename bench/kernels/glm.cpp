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
#define KERNELS kernels_of_glm_intrinsics
#else
static_assert(GLM_CONFIG_SIMD == GLM_DISABLE, "this is to be GLM without intrinsics");
using Matrix = glm::mat4;
using Homogeneous = glm::vec4;
#define KERNELS kernels_of_glm
#endif
// Packed in both: arrays of points hold twelve bytes a point.
using Point = glm::vec3;
static_assert(sizeof(Point) == 12 && sizeof(Matrix) == 64, "records of the arrays' sizes");

namespace
{

constexpr auto point = [](Point &out, const Point &in, const Matrix &matrix) {
    out = Point(matrix * Homogeneous(in.x, in.y, in.z, 1.0f));
};
constexpr auto product = [](Matrix &out, const Matrix &a, const Matrix &b) { out = a * b; };

/** Out of line, as a program gets it that doesn't inline what it calls in many places. */
[[gnu::noinline]] float determinant_of(const Matrix &matrix)
{
    return glm::determinant(matrix);
}

} // namespace

constinit const Kernel KERNELS[] = {
    {"add", each([](Point &out, const Point &a, const Point &b) { out = a + b; })},
    {"scale", each([](Point &out, const Point &v, const float &factor) { out = v * factor; })},
    {"dot", each([](float &out, const Point &a, const Point &b) { out = glm::dot(a, b); })},
    {"cross", each([](Point &out, const Point &a, const Point &b) { out = glm::cross(a, b); })},
    {"length", each([](float &out, const Point &v) { out = glm::length(v); })},
    {"points_xyz", arrays(point)},
    {"points_xyzw", arrays([](Homogeneous &out, const Homogeneous &in, const Matrix &matrix) {
         out = matrix * in;
     })},
    {"point", each(point)},
    {"product", each(product)},
    {"product_chain", chain(product)},
    {"inverse_affine",
     each([](Matrix &out, const Matrix &matrix) { out = glm::affineInverse(matrix); })},
    {"inverse_general",
     each([](Matrix &out, const Matrix &matrix) { out = glm::inverse(matrix); })},
    {"determinant", each([](float &out, const Matrix &matrix) { out = determinant_of(matrix); })},
    {"orientation", each([](glm::mat4 &out, const Point &angles) {
         out = glm::eulerAngleXYZ(angles.x, angles.y, angles.z);
     })},
    {"ray_triangle",
     rays([](Hit &out, const KXRay &ray, const KXTriangle &triangle, const Point &vertices) {
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
     })},
    {},
};
