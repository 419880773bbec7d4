#include "mesh.h"

namespace example
{

KXBox box_around(const Mesh &mesh)
{
    // From the first point, not from a box turned inside out: that one holds only coordinates
    // within its own bounds, and a file may go beyond any.
    KXBox box = {mesh.points.front(), mesh.points.front()};
    for (const KXP3 &point : mesh.points) {
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

} // namespace example
