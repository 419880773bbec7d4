/*
 * place_mesh: reads a mesh, converts its length unit, places it, reports where it is as seen by
 * an observer, and draws it from above, from the front and from the right.
 *
 * A host of kxmaths5: all geometry is the library's.
 */
#include "names.h"
#include "options.h"
#include "placement.h"
#include "png_file.h"
#include "read_back.h"
#include "sheet.h"

namespace
{

void run(int argc, char **argv)
{
    using namespace example;
    const auto options = read_options(argc, argv);
    if (!options) {
        return;
    }
    const Placement placement = place(mesh_for(*options), *options);
    std::vector<ReportLine> lines = report(placement, *options);
    const std::vector<ReportLine> readings = report(read_back(placement.matrix));
    lines.insert(lines.end(), readings.begin(), readings.end());
    const Picture picture = draw_sheet(placement, lines, unit_symbol(options->to));
    write_png(options->picture, picture);
    lines.push_back(
        {"picture", options->picture + text_of(", %d x %d pixels", picture.width, picture.height)});
    print(lines);
}

} // namespace

int main(int argc, char **argv)
{
    return example::run_example("place_mesh", argc, argv, run);
}
