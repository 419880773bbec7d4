/* A placement read back from its matrix in each way that the library has. */
#ifndef PLACE_MESH_READ_BACK_H
#define PLACE_MESH_READ_BACK_H

#include "report.h"

#include <kxmaths5.hpp>

#include <vector>

namespace example
{

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
