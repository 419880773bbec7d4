/* The picture of a scene. */
#ifndef CAST_MESH_RENDER_H
#define CAST_MESH_RENDER_H

#include "camera.h"
#include "hierarchy.h"
#include "png_file.h"
#include "scene.h"

namespace example
{

struct Light {
    float azimuth = -0.5f; /**< Where it comes from, in the world, in radians. */
    float elevation = 0.9f;
};

/** Casts rays through every pixel, on all cores, with a progress bar. */
Picture render(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
               const Light &light, int width, int height);

} // namespace example

#endif
