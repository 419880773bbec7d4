/* An eye in front of a scene. */
#ifndef CAST_MESH_CAMERA_H
#define CAST_MESH_CAMERA_H

#include "scene.h"

namespace example
{

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
