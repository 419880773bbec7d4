/* The drawing: a placed mesh from above, from the front and from the right, and its report.
 */
#ifndef PLACE_MESH_SHEET_H
#define PLACE_MESH_SHEET_H

#include "placement.h"
#include "png_file.h"

#include <string>
#include <vector>

namespace example
{

/** Draws all three views to one scale. unit is the symbol of the length unit, or empty. */
Picture draw_sheet(const Placement &placement, const std::vector<ReportLine> &lines,
                   const std::string &unit);

} // namespace example

#endif
