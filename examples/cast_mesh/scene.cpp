#include "scene.h"

#include "failure.h"

#include <kxmaths5/everyday.h>

#include <cmath>

namespace example
{

Scene::Scene(const Mesh &mesh, const PlacedMeshOptions &options)
    : name(mesh.name), points(mesh.points), mesh_points(mesh.point_count()),
      mesh_triangles(static_cast<std::uint32_t>(mesh.triangles.size()))
{
    const KXBox own_box = box_around(points);
    KXM4 to_scene;
    if (kx_fit_mesh(&own_box, &to_scene, nullptr) != 0) {
        throw Failure(name + " has no extent, or one beyond what can be drawn");
    }
    KXM4NP3I1(&to_scene, mesh_points, points.data(), points.data());
    scale = static_cast<double>(to_scene.m[0][0]);

    KXP3 own_middle;
    KXV3 own_diagonal;
    KXBoxMidPoint(&own_box, &own_middle);
    KXBoxDiagonal(&own_box, &own_diagonal);
    diagonal = scale * KXV3Length(&own_diagonal);

    KXPosition position = options.position;
    KXM4 placement;
    KXM4Position(&placement, nullptr, &position, options.order);
    KXM4P3I1(&placement, &own_middle, &middle);
    if (!std::isfinite(KXV3Length(&middle))) {
        throw Failure("the mesh is placed too far away: a coordinate goes beyond 3.4e38");
    }
    position.x = position.y = position.z = 0.0f;
    KXM4Position(&turn, &turn_back, &position, options.order);

    triangles.reserve(mesh.triangles.size() + 2);
    for (const auto &corner : mesh.triangles) {
        add_triangle(corner[0], corner[1], corner[2]);
    }
    add_floor();
}

void Scene::add_triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    KXTriangle triangle;
    unseen_triangles += kx_triangle(points.data(), a, b, c, &triangle) != 0;
    triangles.push_back(triangle);
}

void Scene::add_floor()
{
    // A square level in the world, under the mesh by so little that no one sees it: a mesh that
    // is flat below would share its place with the floor.
    std::vector<KXP3> turned(mesh_points);
    KXM4NP3I0(&turn, mesh_points, points.data(), turned.data());
    const float y = box_around(turned).minimum.y - static_cast<float>(1e-4 * diagonal);
    const auto half = static_cast<float>(floor_reach * diagonal);
    for (const auto &[x, z] :
         {std::pair{-half, -half}, {half, -half}, {half, half}, {-half, half}}) {
        const KXP3 corner = {x, y, z};
        points.emplace_back();
        KXM4P3I0(&turn_back, &corner, &points.back());
    }
    add_triangle(mesh_points, mesh_points + 2, mesh_points + 1);
    add_triangle(mesh_points, mesh_points + 3, mesh_points + 2);
}

KXV3 Scene::from_middle(const KXP3 &point) const
{
    KXV3 step;
    KXM4P3I0(&turn, &point, &step);
    const auto unit = static_cast<float>(1.0 / scale);
    KXV3Combine(&step, &step, &step, unit, 0.0f);
    return step;
}

Hierarchy Scene::hierarchy(double eye_distance) const
{
    // To the far corners of the floor, 1.5 times as far away as its sides.
    return {triangles, points, static_cast<float>(eye_distance + 1.5 * floor_reach * diagonal)};
}

} // namespace example
