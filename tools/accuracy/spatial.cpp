/* Boxes, lines and rays, triangles and planes. */
#include "experiment.h"

namespace accuracy
{
namespace
{

KXBox random_box(Random &random, double limit)
{
    const KXV3 a = random.uniform_vector(limit), b = random.uniform_vector(limit);
    return {{std::min(a.x, b.x), std::min(a.y, b.y), std::min(a.z, b.z)},
            {std::max(a.x, b.x), std::max(a.y, b.y), std::max(a.z, b.z)}};
}

KXM4 random_placement(Random &random)
{
    const Eigen::Matrix3d block = scaled_rotation(random);
    return affine(block, random.uniform_vector(1000));
}

bool transform_box(Case &c)
{
    const KXBox box = random_box(c.random, 1000);
    const KXM4 m = random_placement(c.random);
    c.given(box, m);
    KXBox out;
    KXTransformBox(&box, &m, &out);
    Vector3 low = translation(m), high = low, reach = low.cwiseAbs();
    for (int i = 0; i < 9; ++i) {
        const int r = i / 3, column = i % 3;
        const Quad a = m.m[r][column] * wide(box.minimum)(column);
        const Quad b = m.m[r][column] * wide(box.maximum)(column);
        low(r) += std::min(a, b);
        high(r) += std::max(a, b);
        reach(r) = std::max({reach(r), fabsq(a), fabsq(b)});
    }
    for (int r = 0; r < 3; ++r) {
        c.error(0, wide(out.minimum)(r), low(r), reach(r));
        c.error(0, wide(out.maximum)(r), high(r), reach(r));
    }
    return true;
}

bool transform_ray(Case &c)
{
    const KXRay ray = {c.random.uniform_vector(1000), c.random.unit_vector()};
    const KXM4 m = random_placement(c.random);
    c.given(ray, m);
    KXRay result;
    KXTransformRay(&ray, &m, &result);
    const Vector3 carried = block(m) * wide(ray.direction);
    c.error(0, wide(result.direction), Vector3(carried / length(carried)),
            largest(carried) / length(carried));
    return true;
}

bool distance_from_ray(Case &c)
{
    const KXRay ray = {c.random.uniform_vector(1000), c.random.unit_vector()};
    const KXP3 point = c.random.uniform_vector(1000);
    c.given(ray, point);
    const Vector3 offset = wide(point) - wide(ray.origin);
    const Quad wanted = length(offset.cross(wide(ray.direction)));
    c.error(0, KXRayPointDistance(&ray, &point), wanted, length(offset));
    return true;
}

struct Slabs {
    Quad near, far;
};

/** The parameters at which a path enters the last slab of a box and leaves the first. */
Slabs clipped(const Vector3 &start, const Vector3 &step, const KXBox &box)
{
    const Vector3 a = (wide(box.minimum) - start).cwiseQuotient(step);
    const Vector3 b = (wide(box.maximum) - start).cwiseQuotient(step);
    return {a.cwiseMin(b).maxCoeff(), a.cwiseMax(b).minCoeff()};
}

bool meet_box_with_line(Case &c)
{
    const KXLine line = {c.random.uniform_vector(1000), c.random.uniform_vector(1000)};
    const KXBox box = random_box(c.random, 1000);
    KXP3 point;
    if (KXLineIxBox(&line, &box, &point) == 0 || wide(point) == wide(line.start)) {
        return false;
    }
    c.given(line, box);
    const Vector3 start = wide(line.start), step = wide(line.end) - start;
    const Vector3 wanted = start + clipped(start, step, box).near * step;
    c.error(0, wide(point), wanted, std::max(largest(start), largest(wide(line.end))));
    return true;
}

bool meet_box_with_ray(Case &c)
{
    const KXRay ray = {c.random.uniform_vector(1000), c.random.unit_vector()};
    const KXBox box = random_box(c.random, 1000);
    KXP3 point;
    if (KXRayIxBox(&ray, &box, &point) == 0 || wide(point) == wide(ray.origin)) {
        return false;
    }
    c.given(ray, box);
    const Vector3 start = wide(ray.origin), step = wide(ray.direction);
    const Slabs slabs = clipped(start, step, box);
    const Vector3 wanted = start + (slabs.near < 0 ? slabs.far : slabs.near) * step;
    c.error(0, wide(point), wanted, std::max(largest(start), largest(wanted)));
    return true;
}

/** What two edges, or a path and a normal, may have in common: sines and cosines below are refused.
 */
constexpr double least_sine = 0.1;

struct Mesh {
    KXP3 vertices[3];
    KXTriangle triangle;
};

Vector3 normal_of(const KXP3 (&corners)[3])
{
    return (wide(corners[1]) - wide(corners[0])).cross(wide(corners[2]) - wide(corners[1]));
}

bool is_well_shaped(const KXP3 (&corners)[3])
{
    const Quad first = length(wide(corners[1]) - wide(corners[0]));
    const Quad second = length(wide(corners[2]) - wide(corners[1]));
    return length(normal_of(corners)) >= least_sine * first * second;
}

bool find_plane(Case &c)
{
    const KXP3 corners[3] = {c.random.uniform_vector(1000), c.random.uniform_vector(1000),
                             c.random.uniform_vector(1000)};
    if (!is_well_shaped(corners)) {
        return false;
    }
    c.given(corners[0], corners[1], corners[2]);
    KXPlane out;
    KXPlaneEquation(&corners[0], &corners[1], &corners[2], &out);
    const Vector3 normal = normal_of(corners) / length(normal_of(corners));
    const Vector3 second = wide(corners[1]);
    c.error(0, Vector3(out.a, out.b, out.c), normal, largest(normal));
    c.error(1, out.d, -normal.dot(second), largest(second));
    return true;
}

bool draw_mesh(Random &random, Mesh *mesh)
{
    mesh->triangle = {};
    for (std::uint32_t i = 0; i < 3; ++i) {
        mesh->vertices[i] = random.uniform_vector(1000);
        mesh->triangle.corner[i].vertex = i;
    }
    return is_well_shaped(mesh->vertices) &&
           KXPlaneEquation(&mesh->vertices[0], &mesh->vertices[1], &mesh->vertices[2],
                           &mesh->triangle.plane) == 0;
}

/** Somewhere in the triangle, not exactly in its plane. */
Eigen::Vector3d target(Random &random, const Mesh &mesh)
{
    double alpha = double(random.between(0, 1)), beta = double(random.between(0, 1));
    if (alpha + beta > 1) {
        alpha = 1 - alpha;
        beta = 1 - beta;
    }
    const auto corner = [&mesh](int i) {
        const KXP3 &p = mesh.vertices[i];
        return Eigen::Vector3d(double(p.x), double(p.y), double(p.z));
    };
    return corner(0) * (1 - alpha - beta) + corner(1) * alpha + corner(2) * beta;
}

KXV3 single(const Eigen::Vector3d &v)
{
    return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z())};
}

/** Compares the point where a path crosses the triangle's plane; false for a path along it. */
bool compare_crossing(Case &c, const KXPlane &plane, const Vector3 &start, const Vector3 &step,
                      const KXP3 &point)
{
    const Vector3 normal(plane.a, plane.b, plane.c);
    const Quad approach = normal.dot(step);
    if (fabsq(approach) < least_sine * length(normal) * length(step)) {
        return false;
    }
    const Vector3 wanted = start - (normal.dot(start) + plane.d) / approach * step;
    c.error(0, wide(point), wanted, std::max(largest(start), largest(wanted)));
    return true;
}

bool meet_triangle_with_line(Case &c)
{
    Mesh mesh;
    if (!draw_mesh(c.random, &mesh)) {
        return false;
    }
    const KXP3 start = c.random.uniform_vector(1000);
    const Eigen::Vector3d from = Eigen::Vector3d(double(start.x), double(start.y), double(start.z));
    const double behind = double(c.random.between(1, 2));
    const KXLine line = {start, single(from + (target(c.random, mesh) - from) * behind)};
    c.given(line, mesh.triangle.plane);
    KXP3 point;
    return KXLineIxTriangle(&line, &mesh.triangle, mesh.vertices, &point) == 1 &&
           compare_crossing(c, mesh.triangle.plane, wide(start), wide(line.end) - wide(start),
                            point);
}

bool meet_triangle_with_ray(Case &c)
{
    Mesh mesh;
    if (!draw_mesh(c.random, &mesh)) {
        return false;
    }
    const KXP3 origin = c.random.uniform_vector(1000);
    const Eigen::Vector3d from(double(origin.x), double(origin.y), double(origin.z));
    const KXRay ray = {origin, single((target(c.random, mesh) - from).normalized())};
    c.given(ray, mesh.triangle.plane);
    KXP3 point;
    return KXRayIxTriangle(&ray, &mesh.triangle, mesh.vertices, &point) == 1 &&
           compare_crossing(c, mesh.triangle.plane, wide(origin), wide(ray.direction), point);
}

bool rotate_in_plane(Case &c)
{
    const KXP3 point = c.random.uniform_vector(1000);
    const KXV3 axis = c.random.unit_vector();
    const float angle = c.random.uniform(3.14);
    c.given(point, axis, angle);
    KXP3 turned = point;
    KXRotateInPlane(&turned, &axis, angle);
    Quad sine, cosine;
    sincosq(angle, &sine, &cosine);
    const Vector3 n = wide(axis) / length(wide(axis)), p = wide(point);
    const Vector3 wanted = p * cosine + n.cross(p) * sine + n * (n.dot(p) * (1 - cosine));
    c.error(0, wide(turned), wanted, largest(p));
    return true;
}

} // namespace

Experiments spatial()
{
    const std::vector<Result> point = {{"point", "the largest coordinate of start and point"}};
    return {
        {"KXTransformBox",
         "box in [-1000, 1000]; rotation, scales ±2^[-4, 4), translation in [-1000, 1000]",
         {{"corners", "the largest term in its sum"}},
         transform_box},
        {"KXTransformRay",
         "unit direction; matrix as above",
         {{"direction", "its largest coordinate"}},
         transform_ray},
        {"KXRayPointDistance",
         "coordinates in [-1000, 1000], a unit direction",
         {{"distance", "the distance from the origin", true}},
         distance_from_ray},
        {"KXLineIxBox",
         "coordinates in [-1000, 1000]; hits from outside",
         {{"point", "the line's largest coordinate"}},
         meet_box_with_line},
        {"KXRayIxBox",
         "coordinates in [-1000, 1000], a unit direction; hits",
         {{"point", "the largest coordinate of origin and point"}},
         meet_box_with_ray},
        {"KXPlaneEquation",
         "coordinates in [-1000, 1000]; sine between the edges at least 0.1",
         {{"a, b, c", "the largest of a, b, c"},
          {"d", "the largest coordinate of the second point"}},
         find_plane},
        {"KXLineIxTriangle", "triangle as above; cosine of line and normal at least 0.1; hits",
         point, meet_triangle_with_line},
        {"KXRayIxTriangle", "the same with a ray, unit direction", point, meet_triangle_with_ray},
        {"KXRotateInPlane",
         "coordinates in [-1000, 1000], axis a unit vector in singles, angle in [-3.14, 3.14]",
         {{"x, y, z", "the largest coordinate given"}},
         rotate_in_plane},
    };
}

} // namespace accuracy
