/* What a person asks of place_mesh. */
#ifndef PLACE_MESH_OPTIONS_H
#define PLACE_MESH_OPTIONS_H

#include "command_line.h"

#include <optional>

namespace example
{

struct Options : PlacedMeshOptions {
    std::string picture;
    KXP3 observer = {0, 0, 0};
};

/** Nothing when only help was asked for, which is printed then. Throws Failure. */
std::optional<Options> read_options(int argc, char **argv);

} // namespace example

#endif
