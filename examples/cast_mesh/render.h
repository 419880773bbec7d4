/* The picture of a scene. */
#ifndef CAST_MESH_RENDER_H
#define CAST_MESH_RENDER_H

#include "hierarchy.h"
#include "png_file.h"
#include "scene.h"

namespace example
{

struct Light {
    /** Where it comes from, in the world, in radians. */
    float azimuth = -30 * radians_per_degree;
    float elevation = 50 * radians_per_degree;
};

/**
 * Casts rays through every pixel, on all cores, with a progress bar. normals: those of the corners
 * of the scene's triangles, for smooth shading, or none.
 */
Picture render(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
               const std::vector<CornerNormals> &normals, const Light &light, int width,
               int height);

} // namespace example

#endif
