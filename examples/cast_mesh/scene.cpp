#include "scene.h"

#include "failure.h"
#include "report.h"

#include <cmath>

namespace example
{

namespace
{

/** The power of two that makes a length 512 to 1024. */
float scale_for(double length)
{
    int exponent = 0;
    std::frexp(length, &exponent);
    return std::ldexp(1.0f, 10 - exponent);
}

} // namespace

Scene::Scene(Mesh mesh, const PlacedMeshOptions &options) : name(mesh.name)
{
    KXP3ChangeNUnits(options.from, options.to, mesh.point_count(), mesh.points.data());
    const KXBox own_box = box_around(mesh);
    KXP3 own_middle;
    KXV3 own_diagonal;
    KXBoxMidPoint(&own_box, &own_middle);
    KXBoxDiagonal(&own_box, &own_diagonal);
    diagonal = KXV3Length(&own_diagonal);
    if (!(diagonal > 1e-30 && diagonal < 1e30)) {
        throw Failure(name + text_of(" has an extent of %g, which cannot be drawn", diagonal));
    }
    scale = scale_for(diagonal);

    // Scene to world: back to the mesh's own size, back to its own middle, to its place.
    KXM4 placement, way_back, step;
    KXM4Position(&placement, &way_back, &options.position, options.order);
    KXM4Translate(own_middle.x, own_middle.y, own_middle.z, &step);
    KXM4Mult(&placement, &step, &to_world);
    KXM4Scale(1.0f / scale, 1.0f / scale, 1.0f / scale, &step);
    KXM4Mult(&to_world, &step, &to_world);
    // World to scene: the same steps the other way round.
    KXM4Translate(-own_middle.x, -own_middle.y, -own_middle.z, &step);
    KXM4Mult(&step, &way_back, &from_world);
    KXM4Scale(scale, scale, scale, &step);
    KXM4Mult(&step, &from_world, &from_world);
    KXM4P3I1(&placement, &own_middle, &middle);

    // The points go there in two steps: far from the origin a single matrix would lose their bits.
    points = std::move(mesh.points);
    const auto count = static_cast<std::uint32_t>(points.size());
    KXM4 to_middle;
    KXM4Translate(-own_middle.x, -own_middle.y, -own_middle.z, &to_middle);
    KXM4NP3I1(&to_middle, count, points.data(), points.data());
    KXM4NP3I1(&step, count, points.data(), points.data());

    triangles.reserve(mesh.triangles.size() + 2);
    for (const auto &corner : mesh.triangles) {
        add_triangle(corner[0], corner[1], corner[2]);
    }
    mesh_triangles = static_cast<std::uint32_t>(triangles.size());
    for (const KXTriangle &triangle : triangles) {
        unseen_triangles += !can_be_hit(triangle);
    }

    KXBox placed_box;
    KXTransformBox(&own_box, &placement, &placed_box);
    add_floor(placed_box);
}

void Scene::add_triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    KXTriangle triangle = {};
    triangle.corner[0].vertex = a;
    triangle.corner[1].vertex = b;
    triangle.corner[2].vertex = c;
    // Corners that define no plane get a plane all the same; can_be_hit tells.
    KXPlaneEquation(&points[a], &points[b], &points[c], &triangle.plane);
    triangles.push_back(triangle);
}

bool Scene::can_be_hit(const KXTriangle &triangle) const
{
    // Straight at its middle, from a unit away along the normal: a triangle that is missed from
    // there is below the tolerances, which look at the triangle and not at the ray.
    const KXP3 &a = points[triangle.corner[0].vertex];
    const KXP3 &b = points[triangle.corner[1].vertex];
    const KXP3 &c = points[triangle.corner[2].vertex];
    const KXV3 normal = {triangle.plane.a, triangle.plane.b, triangle.plane.c};
    KXP3 centre, point;
    KXV3Combine(&a, &b, &centre, 1.0f / 3, 1.0f / 3);
    KXV3Combine(&centre, &c, &centre, 1.0f, 1.0f / 3);
    KXRay ray;
    KXV3Combine(&centre, &normal, &ray.origin, 1.0f, 1.0f);
    KXV3Combine(&normal, &normal, &ray.direction, -1.0f, 0.0f);
    return KXRayIxTriangle(&ray, &triangle, points.data(), &point) == 1;
}

void Scene::add_floor(const KXBox &placed_box)
{
    // A square under the mesh, level in the world.
    const auto half = static_cast<float>(floor_reach * diagonal);
    const float y = placed_box.minimum.y;
    const auto first = static_cast<std::uint32_t>(points.size());
    for (const auto &[x, z] :
         {std::pair{-half, -half}, {half, -half}, {half, half}, {-half, half}}) {
        const KXP3 corner = {middle.x + x, y, middle.z + z};
        points.emplace_back();
        KXM4P3I1(&from_world, &corner, &points.back());
    }
    add_triangle(first, first + 2, first + 1);
    add_triangle(first, first + 3, first + 2);
}

Hierarchy Scene::hierarchy(double eye_distance) const
{
    // To the far corners of the floor, 1.5 times as far away as its sides.
    const double reach = eye_distance + 1.5 * floor_reach * diagonal;
    return {triangles, points, static_cast<float>(reach * static_cast<double>(scale))};
}

} // namespace example
