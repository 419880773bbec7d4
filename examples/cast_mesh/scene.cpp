#include "scene.h"

#include <algorithm>
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

namespace
{

/**
 * How the world is turned before an eye that looks along +Z: about Y until the eye's azimuth is
 * at its back, then about X by its elevation. That is RX*RY; the viewing matrix wants RY*RX*RZ.
 */
kxm::position turned_before(float azimuth, float elevation)
{
    const float half_turn = kxm::radians(180);
    return kxm::mat4::rotation(-elevation, half_turn - azimuth, 0.0f, kxm::order::xyz)
        .placement()
        .position;
}

/** The least distance from which all points are in the picture, with a margin around them. They are
 * about the mesh's middle, in the eye's axes. */
double distance_for(const std::vector<KXP3> &points, double half_width, double half_height)
{
    constexpr double margin = 1.0 / 0.92;
    double distance = 0.0;
    for (const KXP3 &p : points) {
        const double x = p.x, y = p.y, z = p.z;
        const double needed = std::max(std::fabs(x) / half_width, std::fabs(y) / half_height);
        distance = std::max(distance, margin * needed - z);
    }
    return distance;
}

} // namespace

Camera::Camera(const Scene &scene, const CameraOptions &options)
    : pixel(2.0 * std::tan(0.5 * static_cast<double>(options.field_of_view)) / options.width),
      centre_column(0.5 * options.width), centre_row(0.5 * options.height)
{
    kxm::position before = turned_before(options.azimuth, options.elevation);
    const kxm::mat4 turned = before.matrix(kxm::order::yxz) * scene.turn;
    std::vector<KXP3> points(scene.mesh_points);
    KXM4NP3I0(&turned, scene.mesh_points, scene.points.data(), points.data());
    distance = options.distance > 0.0f
                   ? scene.scale * static_cast<double>(options.distance)
                   : distance_for(points, pixel * centre_column, pixel * centre_row);

    // The turned world is moved until the mesh's middle is straight ahead of the eye.
    const auto ahead = static_cast<float>(distance);
    before.z = ahead;
    // The offset shears the world so that an eye next to the origin sees what this one does from
    // the origin; what is as far away as the mesh's middle stays where it is. X runs to the left.
    const auto offset = static_cast<float>(scene.scale * static_cast<double>(options.eye_offset));
    const auto inverse = (before.viewing(ahead, -offset, 1.0f) * scene.turn).inverse();
    if (!inverse) {
        throw Failure("the mesh cannot be seen from there");
    }
    eye_to_scene = *inverse;
    eye = eye_to_scene * kxm::point3();
}

kxm::ray Camera::ray_through(double column, double row) const
{
    const kxm::vec3 direction(static_cast<float>((centre_column - column) * pixel),
                              static_cast<float>((centre_row - row) * pixel), 1.0f);
    return eye_to_scene * kxm::ray(kxm::point3(), direction);
}

} // namespace example
