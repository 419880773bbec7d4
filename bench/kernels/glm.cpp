/*
 * GLM's kernels, inlined as in its users' programs. Built twice: with GLM's defaults, and with
 * GLM_FORCE_INTRINSICS and the aligned types that it needs to have an effect.
 */
#include "array.h"
#include "kernels.h"

#include <glm/ext/matrix_transform.hpp>
#include <glm/glm.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtx/euler_angles.hpp>
#include <glm/gtx/intersect.hpp>

#ifdef GLM_FORCE_INTRINSICS
#include <glm/gtc/type_aligned.hpp>
static_assert(GLM_CONFIG_SIMD == GLM_ENABLE, "GLM would use no intrinsics");
#define TABLE kernels_of_glm_intrinsics
#else
static_assert(GLM_CONFIG_SIMD == GLM_DISABLE, "this is to be GLM without intrinsics");
#define TABLE kernels_of_glm
#endif

namespace
{

#ifdef GLM_FORCE_INTRINSICS
using Matrix = glm::aligned_mat4;
using Homogeneous = glm::aligned_vec4;
#else
using Matrix = glm::mat4;
using Homogeneous = glm::vec4;
#endif
// Packed in both: arrays of points hold twelve bytes a point.
using Point = glm::vec3;
static_assert(sizeof(Point) == 12 && sizeof(Matrix) == 64, "records of the arrays' sizes");

Point moved(const Matrix &matrix, const Point &point)
{
    return Point(matrix * Homogeneous(point.x, point.y, point.z, 1.0f));
}

void points_xyz(const Work *work)
{
    const Point *in = array<Point>(work->first);
    Point *out = array<Point>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        // A copy, so that no store to the results could change it.
        const Matrix matrix = array<Matrix>(work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            out[i] = moved(matrix, in[i]);
        }
    }
}

void points_xyzw(const Work *work)
{
    const Homogeneous *in = array<Homogeneous>(work->first);
    Homogeneous *out = array<Homogeneous>(work->out);
    for (size_t group = 0; group < work->groups; ++group) {
        const Matrix matrix = array<Matrix>(work->second)[group];
        const size_t begin = group * work->count;
        for (size_t i = begin; i < begin + work->count; ++i) {
            out[i] = matrix * in[i];
        }
    }
}

void point(const Work *work)
{
    const Point *points = array<Point>(work->first);
    const Matrix *matrices = array<Matrix>(work->second);
    Point *out = array<Point>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = moved(matrices[i], points[i]);
        keep(&out[i]);
    }
}

void product(const Work *work)
{
    const Matrix *a = array<Matrix>(work->first);
    const Matrix *b = array<Matrix>(work->second);
    Matrix *out = array<Matrix>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = a[i] * b[i];
        keep(&out[i]);
    }
}

void product_chain(const Work *work)
{
    const Matrix *links = array<Matrix>(work->first);
    Matrix *out = array<Matrix>(work->out);
    out[0] = links[0];
    // Nothing is kept by force here: the next link needs the result anyway.
    for (size_t i = 1; i < work->count; ++i) {
        out[i] = out[i - 1] * links[i];
    }
}

void inverse_affine(const Work *work)
{
    const Matrix *matrices = array<Matrix>(work->first);
    Matrix *out = array<Matrix>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = glm::affineInverse(matrices[i]);
        keep(&out[i]);
    }
}

void inverse_general(const Work *work)
{
    const Matrix *matrices = array<Matrix>(work->first);
    Matrix *out = array<Matrix>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = glm::inverse(matrices[i]);
        keep(&out[i]);
    }
}

/** Out of line, as a program gets it that doesn't inline what it calls in many places. */
[[gnu::noinline]] float determinant_of(const Matrix &matrix)
{
    return glm::determinant(matrix);
}

void determinant(const Work *work)
{
    const Matrix *matrices = array<Matrix>(work->first);
    float *out = array<float>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = determinant_of(matrices[i]);
        keep(&out[i]);
    }
}

void orientation(const Work *work)
{
    const Point *angles = array<Point>(work->first);
    glm::mat4 *out = array<glm::mat4>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        out[i] = glm::eulerAngleXYZ(angles[i].x, angles[i].y, angles[i].z);
        keep(&out[i]);
    }
}

void ray_triangle(const Work *work)
{
    const KXRay *rays = array<KXRay>(work->first);
    const KXTriangle *triangles = array<KXTriangle>(work->second);
    const Point *vertices = array<Point>(work->third);
    Hit *out = array<Hit>(work->out);
    for (size_t i = 0; i < work->count; ++i) {
        const Point origin(rays[i].origin.x, rays[i].origin.y, rays[i].origin.z);
        const Point direction(rays[i].direction.x, rays[i].direction.y, rays[i].direction.z);
        const KXTriangle &triangle = triangles[i % target_count];
        glm::vec2 place;
        float distance;
        // GLM also reports triangles behind the origin; the data has none.
        const bool hit =
            glm::intersectRayTriangle(origin, direction, vertices[triangle.corner[0].vertex],
                                      vertices[triangle.corner[1].vertex],
                                      vertices[triangle.corner[2].vertex], place, distance);
        out[i].hit = hit;
        if (hit) {
            const Point contact = origin + direction * distance;
            out[i].point = {contact.x, contact.y, contact.z};
        }
        keep(&out[i]);
    }
}

const Kernel kernels[] = {
    {"points_xyz", points_xyz},
    {"points_xyzw", points_xyzw},
    {"point", point},
    {"product", product},
    {"product_chain", product_chain},
    {"inverse_affine", inverse_affine},
    {"inverse_general", inverse_general},
    {"determinant", determinant},
    {"orientation", orientation},
    {"ray_triangle", ray_triangle},
    {nullptr, nullptr},
};

} // namespace

BENCH_EXPORT const Kernel *TABLE()
{
    return kernels;
}
