#include "camera.h"

#include "failure.h"

#include <cmath>

namespace example
{

namespace
{

/**
 * How the world is turned before an eye that looks along +Z: about Y until the eye's azimuth lies
 * behind, then about X by its elevation. That is RX*RY; the viewing matrix wants RY*RX*RZ.
 */
KXPosition turned_before(float azimuth, float elevation)
{
    constexpr float half_turn = 3.1415927f;
    KXM4 m;
    KXPosition position;
    KXM4Orientation(&m, nullptr, -elevation, half_turn - azimuth, 0.0f, KX_ORDER_XYZ);
    KXM4MatrixComponents(&m, &position, nullptr);
    return position;
}

} // namespace

Camera::Camera(const Scene &scene, const CameraOptions &options)
    : distance(options.distance > 0.0f ? static_cast<double>(options.distance)
                                       : 2.3 * scene.diagonal),
      pixel(2.0 * std::tan(0.5 * static_cast<double>(options.field_of_view)) / options.width),
      centre_column(0.5 * options.width), centre_row(0.5 * options.height)
{
    // The turned world is moved until the mesh's middle stands straight ahead of the eye.
    KXPosition before = turned_before(options.azimuth, options.elevation);
    const auto ahead = static_cast<float>(distance);
    const KXP3 place = {0.0f, 0.0f, ahead};
    KXM4 turned;
    KXP3 middle;
    KXM4Orientation(&turned, nullptr, before.rotateX, before.rotateY, before.rotateZ, KX_ORDER_YXZ);
    KXM4P3I0(&turned, &scene.middle, &middle);
    KXV3 step;
    KXV3Combine(&place, &middle, &step, 1.0f, -1.0f);
    before.x = step.x;
    before.y = step.y;
    before.z = step.z;

    // The offset shears the world so that an eye beside the origin sees what this one does from the
    // origin; what stands as far away as the mesh's middle stays where it is. X runs to the left.
    KXM4 view;
    KXM4Projection1(&view, &before, ahead, -options.eye_offset, 1.0f);
    KXM4Mult(&view, &scene.to_world, &view);
    if (KXM4Inverse(&view, &eye_to_scene) != 0) {
        throw Failure("the mesh cannot be seen from there");
    }
    const KXP3 origin = {0.0f, 0.0f, 0.0f};
    KXM4P3I1(&eye_to_scene, &origin, &eye_in_world);
    KXM4P3I1(&scene.to_world, &eye_in_world, &eye_in_world);
}

KXRay Camera::ray_through(double column, double row) const
{
    KXRay ray = {{0.0f, 0.0f, 0.0f},
                 {static_cast<float>((centre_column - column) * pixel),
                  static_cast<float>((centre_row - row) * pixel), 1.0f}};
    KXTransformRay(&ray, &eye_to_scene, &ray);
    return ray;
}

} // namespace example
