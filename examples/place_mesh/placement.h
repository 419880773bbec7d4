/* A mesh in its place: the part of the program that is the library's work. */
#ifndef PLACE_MESH_PLACEMENT_H
#define PLACE_MESH_PLACEMENT_H

#include "mesh.h"
#include "report.h"

#include <kxmaths5.hpp>

#include <vector>

namespace example
{

/** What a person asks for. */
struct Options : PlacedMeshOptions {
    std::string picture;
    KXP3 observer = {0, 0, 0};
};

struct Placement {
    kxm::box own_box; /**< Around the mesh as it came, in the unit wanted. */
    kxm::point3 own_mid_point;
    kxm::vec3 own_diagonal;
    kxm::mat4 matrix;      /**< From the mesh's own space to its place. */
    kxm::box placed_box;   /**< The mesh's own box, transformed to its place. */
    kxm::box tight_box;    /**< Around the points in their place. */
    kxm::point3 mid_point; /**< The middle of the mesh's own box, in its place. */
    /** The mesh and its boxes as placed, but about mid_point: far from the origin, singles have too
     * few bits for a shape. */
    Mesh mesh;
    kxm::box placed_box_here, tight_box_here;
    double ground_range;         /**< From the observer to mid_point: along the ground, */
    double bearing;              /**< the direction on the ground from +Z towards +X, 0 to 2pi, */
    kxm::polar_coordinates seen; /**< and in space. */
};

/** Converts, places and measures a mesh. Throws Failure when a float can't hold the outcome. */
Placement place(Mesh mesh, const Options &options);

/** What a person wants to know of it. */
std::vector<ReportLine> report(const Placement &placement, const Options &options);

/** A placement read from its matrix in each way that the library has. */
struct ReadBack {
    kxm::components by_rows;
    kxm::placement_and_scale by_columns;
    kxm::quat quaternion;
    float largest_difference; /**< Of any element, in the three matrices built again. */
};

/** Reads a placement back and builds it again from each reading. Throws Failure. */
ReadBack read_back(const kxm::mat4 &placement);

std::vector<ReportLine> report(const ReadBack &read);

} // namespace example

#endif
