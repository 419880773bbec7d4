/* A shaded view of a mesh, from one direction and without perspective. */
#ifndef PLACE_MESH_SHADING_H
#define PLACE_MESH_SHADING_H

#include "mesh.h"
#include "report.h"

#include <cstdint>
#include <vector>

namespace example
{

/** Pixels row by row from the top: alpha, red, green, blue from the high byte down; 0 where the
 * mesh is not. */
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> argb;
};

/**
 * Draws a mesh.
 *
 * view turns the mesh's space so that +X points right, +Y up and +Z at the viewer; pixels takes the
 * mesh's space to columns, rows and nearness. The progress advances by one for each triangle.
 */
Image shade(const Mesh &mesh, const std::vector<KXV3> &normals, const KXM4 &view,
            const KXM4 &pixels, int width, int height, Progress &progress);

} // namespace example

#endif
