/* What a person asks of place_mesh. */
#ifndef PLACE_MESH_OPTIONS_H
#define PLACE_MESH_OPTIONS_H

#include <kxmaths5.h>

#include <optional>
#include <string>

namespace example
{

struct Options {
    std::string mesh; /**< Empty: the default mesh. */
    std::string picture = "placed_mesh.png";
    KXUnit from = KX_UNIT_METRE;
    KXUnit to = KX_UNIT_METRE;
    KXPosition position = {0, 0, 0, 0, 0, 0}; /**< Angles in radians, as the library wants them. */
    KXRotationOrder order = KX_ORDER_YXZ;
    std::string order_name = "YXZ";
    KXP3 observer = {0, 0, 0};
};

/**
 * Reads the command line. Nothing when it only asked for help, which is printed then. Throws
 * Failure.
 */
std::optional<Options> read_options(int argc, char **argv);

} // namespace example

#endif
