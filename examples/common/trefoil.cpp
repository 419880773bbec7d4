#include "mesh.h"

#include <cmath>

namespace example
{

namespace
{

constexpr std::uint32_t steps_along = 240;
constexpr std::uint32_t steps_around = 24;
constexpr float tube_radius = 0.35f;
constexpr double whole_turn = 6.283185307179586;

KXP3 on_knot(double t)
{
    return {static_cast<float>(std::sin(t) + 2.0 * std::sin(2.0 * t)),
            static_cast<float>(std::cos(t) - 2.0 * std::cos(2.0 * t)),
            static_cast<float>(-std::sin(3.0 * t))};
}

} // namespace

Mesh trefoil()
{
    Mesh mesh;
    mesh.name = "a trefoil knot";
    for (std::uint32_t i = 0; i < steps_along; ++i) {
        const double t = whole_turn * i / steps_along;
        const KXP3 centre = on_knot(t);
        const KXP3 ahead = on_knot(t + 0.001), behind = on_knot(t - 0.001);
        // Across the tube: two unit vectors at right angles to the knot's course.
        KXV3 along, out, up;
        KXV3Combine(&ahead, &behind, &along, 1.0f, -1.0f);
        KXV3Normalise(&along, &along);
        KXV3Cross(&along, &centre, &up);
        KXV3Normalise(&up, &up);
        KXV3Cross(&up, &along, &out);
        for (std::uint32_t j = 0; j < steps_around; ++j) {
            const double a = whole_turn * j / steps_around;
            KXP3 point;
            KXV3Combine(&out, &up, &point, tube_radius * static_cast<float>(std::cos(a)),
                        tube_radius * static_cast<float>(std::sin(a)));
            KXV3Combine(&centre, &point, &point, 1.0f, 1.0f);
            mesh.points.push_back(point);
        }
    }
    const auto at = [](std::uint32_t i, std::uint32_t j) {
        return i % steps_along * steps_around + j % steps_around;
    };
    for (std::uint32_t i = 0; i < steps_along; ++i) {
        for (std::uint32_t j = 0; j < steps_around; ++j) {
            mesh.triangles.push_back({at(i, j), at(i, j + 1), at(i + 1, j)});
            mesh.triangles.push_back({at(i + 1, j), at(i, j + 1), at(i + 1, j + 1)});
        }
    }
    return mesh;
}

} // namespace example
