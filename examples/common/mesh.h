/* A triangle mesh as a host of kxmaths5 keeps it: packed points, and corners by index. */
#ifndef EXAMPLES_MESH_H
#define EXAMPLES_MESH_H

#include <kxmaths5.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace example
{

/** One normal for each corner of a triangle. */
using CornerNormals = std::array<KXV3, 3>;

struct Mesh {
    std::string name;
    std::vector<KXP3> points;
    std::vector<std::array<std::uint32_t, 3>> triangles;
    /** For each triangle, zero where the file has none; or empty. */
    std::vector<CornerNormals> normals;

    /** The count that the library's array forms take. */
    std::uint32_t point_count() const
    {
        return static_cast<std::uint32_t>(points.size());
    }
};

/** The box around points, of which there is at least one. */
KXBox box_around(const std::vector<KXP3> &points);

/** The unit normal of each triangle, by the right-hand rule; zero for a triangle with no area. */
std::vector<KXV3> triangle_normals(const Mesh &mesh);

/**
 * Normals for smooth shading: the file's where it has them, else the mean of the triangles that
 * meet at the corner and whose normals differ by less than `crease` radians from this triangle's.
 */
std::vector<CornerNormals> smooth_normals(const Mesh &mesh, float crease);

/** Reads a file of any kind that Assimp reads. Polygons are split into triangles, and points in the
 * same place are one. Throws Failure. */
Mesh read_mesh(const std::string &path);

/** A tube along a trefoil knot: a shape for when there is no file. It has no symmetry to hide a
 * wrong rotation, and its mirror image is a different knot. */
Mesh trefoil();

/** The mesh in a file or, without a name, the bunny of a Debian package; where that is not there
 * either, the knot, with a line on stdout that says so. Throws Failure. */
Mesh mesh_named(const std::string &path);

/** A mesh, the unit to work in, and its place. */
struct PlacedMeshOptions {
    std::string mesh; /**< Empty: the default mesh. */
    KXUnit from = KX_UNIT_METRE;
    KXUnit to = KX_UNIT_METRE;
    std::string symbol = "m";                 /**< Of `to`; empty for KX_UNIT_NONE. */
    bool z_is_up = false;                     /**< In the file. */
    KXPosition position = {0, 0, 0, 0, 0, 0}; /**< Angles in radians, as the library wants them. */
    KXRotationOrder order = KX_ORDER_YXZ;
    std::string order_name = "YXZ";
};

/** The mesh that is asked for, with Y up and in the unit to work in. Throws Failure. */
Mesh mesh_for(const PlacedMeshOptions &options);

} // namespace example

#endif
