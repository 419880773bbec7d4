#include "mesh.h"

#include <kxmaths5/everyday.h>

#include <algorithm>
#include <cmath>

namespace example
{

namespace
{

/** The angle of a triangle at one of its corners. */
double corner_angle(const Mesh &mesh, std::size_t triangle, std::size_t corner)
{
    const auto &corners = mesh.triangles[triangle];
    const KXP3 &origin = mesh.points[corners[corner]];
    KXV3 one, other;
    KXV3Combine(&mesh.points[corners[(corner + 1) % 3]], &origin, &one, 1.0f, -1.0f);
    KXV3Combine(&mesh.points[corners[(corner + 2) % 3]], &origin, &other, 1.0f, -1.0f);
    KXV3Normalise(&one, &one);
    KXV3Normalise(&other, &other);
    return std::acos(std::clamp(kx_dot(&one, &other), -1.0, 1.0));
}

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

KXBox box_around(const std::vector<KXP3> &points)
{
    // From the first point, not from a box turned inside out: that one holds only coordinates
    // within its own bounds, and a file may go beyond any.
    KXBox box = {points.front(), points.front()};
    for (const KXP3 &point : points) {
        KXPutPointInBox(&point, &box);
    }
    return box;
}

std::vector<KXV3> triangle_normals(const Mesh &mesh)
{
    std::vector<KXV3> normals(mesh.triangles.size());
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const auto &corner = mesh.triangles[i];
        const KXP3 &origin = mesh.points[corner[0]];
        KXV3 along, across;
        KXV3Combine(&mesh.points[corner[1]], &origin, &along, 1.0f, -1.0f);
        KXV3Combine(&mesh.points[corner[2]], &origin, &across, 1.0f, -1.0f);
        // Unit edges first: the cross product of short ones would be too short to normalise.
        KXV3Normalise(&along, &along);
        KXV3Normalise(&across, &across);
        KXV3Cross(&along, &across, &normals[i]);
        KXV3Normalise(&normals[i], &normals[i]);
    }
    return normals;
}

std::vector<CornerNormals> smooth_normals(const Mesh &mesh, float crease)
{
    const std::vector<KXV3> flat = triangle_normals(mesh);
    struct Corner {
        std::size_t triangle;
        float weight;
    };
    std::vector<std::vector<Corner>> around(mesh.points.size());
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            around[mesh.triangles[i][k]].push_back(
                {i, static_cast<float>(corner_angle(mesh, i, k))});
        }
    }
    std::vector<CornerNormals> normals = mesh.normals;
    normals.resize(mesh.triangles.size());
    const double least = std::cos(static_cast<double>(crease));
    for (std::size_t i = 0; i < normals.size(); ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            KXV3 &normal = normals[i][k];
            if (KXV3Length(&normal) > 0.5) {
                continue; // the file's
            }
            for (const Corner &corner : around[mesh.triangles[i][k]]) {
                if (kx_dot(&flat[i], &flat[corner.triangle]) >= least) {
                    KXV3Combine(&normal, &flat[corner.triangle], &normal, 1.0f, corner.weight);
                }
            }
            KXV3Normalise(&normal, &normal);
        }
    }
    return normals;
}

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

Mesh mesh_for(const PlacedMeshOptions &options)
{
    Mesh mesh = mesh_named(options.mesh);
    if (options.z_is_up) {
        // A rotation by a quarter turn, exactly: in singles its cosine would be 4e-8.
        const auto turn = [](KXV3 &v) { v = {v.x, v.z, -v.y}; };
        std::for_each(mesh.points.begin(), mesh.points.end(), turn);
        for (CornerNormals &normals : mesh.normals) {
            std::for_each(normals.begin(), normals.end(), turn);
        }
    }
    KXP3ChangeNUnits(options.from, options.to, mesh.point_count(), mesh.points.data());
    return mesh;
}

} // namespace example
