#include "options.h"

namespace example
{

std::optional<Options> read_options(int argc, char **argv)
{
    Options options;
    Triple observer = {};
    CommandLine line("Places a mesh, reports where it is, and draws it from three sides.",
                     "  place_mesh part.stl --up z --from mm --to cm --rotate 0 45 0 -o part.png\n"
                     "  place_mesh house.obj --position 100 0 -20 --observer 0 2 0");
    line.add_triple("--observer", observer, "X Y Z", "where it is seen from, in the unit of --to");
    line.add_picture(options.picture, "placed_mesh.png");
    if (!line.parse(argc, argv, options)) {
        return std::nullopt;
    }
    options.observer = {observer[0], observer[1], observer[2]};
    return options;
}

} // namespace example
