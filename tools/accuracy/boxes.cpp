/* Boxes, lines and rays. */
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

} // namespace

Experiments boxes()
{
    const char *const path_and_box = "coordinates in [-1000, 1000], a unit direction; hits";
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
         path_and_box,
         {{"point", "the largest coordinate of origin and point"}},
         meet_box_with_ray},
    };
}

} // namespace accuracy
