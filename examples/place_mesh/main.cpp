/*
 * place_mesh: reads a mesh, converts its length unit, places it, reports its position as seen by
 * an observer, and draws it from above, from the front and from the right.
 *
 * A host of kxmaths5: all geometry is the library's.
 */
#include "command_line.h"
#include "placement.h"
#include "png_file.h"
#include "sheet.h"

#include <optional>

namespace
{

using namespace example;

/** Nothing when only help was asked for, which is printed then. Throws Failure. */
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

void run(int argc, char **argv)
{
    const auto options = read_options(argc, argv);
    if (!options) {
        return;
    }
    const Placement placement = place(mesh_for(*options), *options);
    std::vector<ReportLine> lines = report(placement, *options);
    const std::vector<ReportLine> readings = report(read_back(placement.matrix));
    lines.insert(lines.end(), readings.begin(), readings.end());
    const Picture picture = draw_sheet(placement, lines, options->symbol);
    write_png(options->picture, picture);
    lines.push_back(line_for(options->picture, picture));
    print(lines);
}

} // namespace

int main(int argc, char **argv)
{
    return example::run_example("place_mesh", argc, argv, run);
}
