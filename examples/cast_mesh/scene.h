/* A placed mesh made ready for casting. */
#ifndef CAST_MESH_SCENE_H
#define CAST_MESH_SCENE_H

#include "command_line.h"
#include "hierarchy.h"
#include "mesh.h"

#include <string>
#include <vector>

namespace example
{

/**
 * A mesh on a floor, in a space of its own: the mesh's own axes about the mesh's middle, scaled by
 * a power of two (which costs no bit) until the mesh is 512 to 1024 units across. The triangle
 * test's tolerances are absolute; what a mesh is measured in must not decide which of its triangles
 * can be seen. Rays are carried into this space, not the triangles out of it.
 */
class Scene
{
public:
    /** Throws Failure when the mesh has no extent, or none that a float can hold. */
    Scene(Mesh mesh, const PlacedMeshOptions &options);

    std::string name;
    std::vector<KXP3> points;
    std::vector<KXTriangle> triangles; /**< The mesh's; the last two are the floor. */
    std::uint32_t mesh_triangles = 0;
    std::uint32_t unseen_triangles = 0; /**< Of the mesh, too small or too flat to be hit. */
    float scale = 1.0f;

    KXM4 to_world;   /**< From the scene's space to the world. */
    KXM4 from_world; /**< And back. */
    KXP3 middle;     /**< Of the mesh, in the world. */
    double diagonal; /**< Of the mesh, in the world's unit. */

    /** The floor is a square about the mesh's middle; this is half its side, in diagonals. */
    static constexpr double floor_reach = 4.0;

    /** The boxes for rays from an eye so far away, in the world's unit. They look into this scene.
     */
    Hierarchy hierarchy(double eye_distance) const;

    bool is_floor(std::uint32_t triangle) const
    {
        return triangle >= mesh_triangles;
    }

private:
    void add_triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c);
    void add_floor(const KXBox &placed_box);
    bool can_be_hit(const KXTriangle &triangle) const;
};

} // namespace example

#endif
