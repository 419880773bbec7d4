#include "scene.h"

#include <cmath>

namespace example
{

Scene::Scene(const Mesh &mesh, const PlacedMeshOptions &options)
    : name(mesh.name), points(mesh.points), mesh_points(mesh.point_count()),
      mesh_triangles(static_cast<std::uint32_t>(mesh.triangles.size()))
{
    const kxm::box own_box(box_around(points));
    const auto fit = own_box.fit();
    if (!fit) {
        throw Failure(name + " has no extent, or one beyond what can be drawn");
    }
    KXM4NP3I1(&fit->there, mesh_points, points.data(), points.data());
    scale = static_cast<double>(fit->there(0, 0));
    diagonal = scale * own_box.diagonal().length();

    kxm::position position(options.position);
    const auto order = static_cast<kxm::order>(options.order);
    middle = position.matrix(order) * own_box.middle();
    if (!std::isfinite(kxm::vec3(middle).length())) {
        throw Failure("the mesh is placed too far away: a coordinate goes beyond 3.4e38");
    }
    position.x = position.y = position.z = 0.0f;
    const auto [there, back] = position.matrices(order);
    turn = there;
    turn_back = back;

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
        points.push_back(turn_back * kxm::vec3(x, y, z));
    }
    add_triangle(mesh_points, mesh_points + 2, mesh_points + 1);
    add_triangle(mesh_points, mesh_points + 3, mesh_points + 2);
}

kxm::vec3 Scene::from_middle(const KXP3 &point) const
{
    return turn * kxm::vec3(point) / scale;
}

Hierarchy Scene::hierarchy(double eye_distance) const
{
    // To the far corners of the floor, 1.5 times as far away as its sides.
    return {triangles, points, static_cast<float>(eye_distance + 1.5 * floor_reach * diagonal)};
}

} // namespace example
