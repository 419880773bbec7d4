#include "camera.h"

#include <algorithm>
#include <cmath>

namespace example
{

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
