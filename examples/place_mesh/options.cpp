#include "options.h"

namespace example
{

std::optional<Options> read_options(int argc, char **argv)
{
    Options options;
    Triple observer = {};
    CommandLine line("Places a mesh, tells where it stands, and draws it from three sides.");
    line.add_triple("--observer", observer, "where it is seen from");
    line.add_picture(options.picture, "placed_mesh.png");
    if (!line.parse(argc, argv, options)) {
        return std::nullopt;
    }
    options.observer = {observer[0], observer[1], observer[2]};
    return options;
}

} // namespace example
