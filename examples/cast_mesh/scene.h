/* A placed mesh made ready for casting, and an eye in front of it. */
#ifndef CAST_MESH_SCENE_H
#define CAST_MESH_SCENE_H

#include "hierarchy.h"
#include "mesh.h"
#include "report.h"

#include <kxmaths5.hpp>

#include <string>
#include <vector>

namespace example
{

/**
 * A mesh on a floor, in a space of its own: the mesh's own axes about the mesh's middle, scaled by
 * a power of two until the mesh is 512 to 1024 units across. The triangle test's tolerances are
 * absolute; what a mesh is measured in must not decide which of its triangles can be seen. Rays are
 * transformed into this space, not the triangles out of it, and what is seen does not depend on how
 * far from the world's origin the mesh is.
 */
class Scene
{
public:
    /** Throws Failure when the mesh has no extent, or none that a float can hold. */
    Scene(const Mesh &mesh, const PlacedMeshOptions &options);

    std::string name;
    std::vector<KXP3> points;          /**< The mesh's; the last four are the floor's. */
    std::vector<KXTriangle> triangles; /**< The mesh's; the last two are the floor. */
    std::uint32_t mesh_points = 0, mesh_triangles = 0;
    std::uint32_t unseen_triangles = 0; /**< Of the mesh, too small or too flat to be hit. */
    double scale;                       /**< Units of this space for one of the world's. */
    double diagonal;                    /**< Of the mesh, in this space. */

    kxm::mat4 turn;      /**< Turns this space's axes into the world's. */
    kxm::mat4 turn_back; /**< And back. */
    kxm::point3 middle;  /**< Of the mesh, in the world. */

    /** A point as seen from the mesh's middle, in the world's axes and unit. */
    kxm::vec3 from_middle(const KXP3 &point) const;

    /** The floor is a square about the mesh's middle; this is half its side, in diagonals. */
    static constexpr double floor_reach = 4.0;

    /** The boxes for rays from an eye so far away. They look into this scene. */
    Hierarchy hierarchy(double eye_distance) const;

    bool is_floor(std::uint32_t triangle) const
    {
        return triangle >= mesh_triangles;
    }

private:
    void add_triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c);
    void add_floor();
};

struct CameraOptions {
    /** Where the eye is, seen from the mesh's middle, in radians. */
    float azimuth = 35 * radians_per_degree;
    float elevation = 20 * radians_per_degree; /**< And how high. */
    float distance = 0.0f; /**< How far away, in the world's unit; 0: so that all is seen. */
    /** From the picture's left side to its right, in radians. */
    float field_of_view = 35 * radians_per_degree;
    float eye_offset = 0.0f; /**< How far to the right it is, for one of two pictures. */
    int width = 1280;
    int height = 720;
};

/**
 * The eye's space has the eye at its origin, looking along +Z, with Y up; so X runs to the left of
 * the picture. Its unit is the scene's.
 */
class Camera
{
public:
    /** Throws Failure when the scene can't be seen from there. */
    Camera(const Scene &scene, const CameraOptions &options);

    /** The ray through a place in the picture, in columns and rows, in the scene's space. */
    kxm::ray ray_through(double column, double row) const;

    double distance; /**< From the eye to the mesh's middle, in the scene's unit. */
    kxm::point3 eye; /**< In the scene's space. */

private:
    kxm::mat4 eye_to_scene;
    double pixel; /**< Width of a pixel at Z = 1. */
    double centre_column, centre_row;
};

} // namespace example

#endif
