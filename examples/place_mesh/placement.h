/* A mesh in its place: the part of the program that is the library's work. */
#ifndef PLACE_MESH_PLACEMENT_H
#define PLACE_MESH_PLACEMENT_H

#include "mesh.h"
#include "options.h"
#include "report.h"

#include <vector>

namespace example
{

struct Placement {
    KXBox own_box; /**< Around the mesh as it came, in the unit wanted. */
    KXP3 own_mid_point;
    KXV3 own_diagonal;
    KXM4 matrix;       /**< From the mesh's own space to its place. */
    KXM4 inverse;      /**< And back. */
    KXBox carried_box; /**< The mesh's own box, carried to its place. */
    KXBox tight_box;   /**< Around the points in their place. */
    KXP3 mid_point;    /**< The middle of the mesh's own box, in its place. */
    /** The mesh and its boxes as placed, but about mid_point: far from the origin, singles have too
     * few bits for a shape. */
    Mesh mesh;
    KXBox carried_box_here, tight_box_here;
    double ground_range; /**< From the observer to that point: along the ground, */
    double bearing;      /**< the direction on the ground from +Z towards +X, 0 to 2pi, */
    float range;         /**< the straight distance, */
    float elevation;     /**< the angle above the ground, */
    float azimuth;       /**< and the same direction as the bearing, -pi to pi. */
};

/** Converts, places and measures a mesh. Throws Failure when a float can't hold the outcome. */
Placement place(Mesh mesh, const Options &options);

/** What a person wants to know of it. */
std::vector<ReportLine> report(const Placement &placement, const Options &options);

} // namespace example

#endif
