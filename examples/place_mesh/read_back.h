/* A placement read back from its matrix in each way that the library has. */
#ifndef PLACE_MESH_READ_BACK_H
#define PLACE_MESH_READ_BACK_H

#include "report.h"

#include <kxmaths5.h>

#include <vector>

namespace example
{

struct ReadBack {
    KXComponents by_rows;
    KXPosition by_columns;
    KXV3 column_scale;
    KXQuat quaternion;
    float largest_difference; /**< Of any element, in the three matrices built again. */
};

/** Reads a placement back and builds it again from each reading. Throws Failure. */
ReadBack read_back(const KXM4 &placement);

std::vector<ReportLine> report(const ReadBack &read);

} // namespace example

#endif
