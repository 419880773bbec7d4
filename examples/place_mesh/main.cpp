/*
 * place_mesh: reads a mesh, converts its length unit, places it, tells where it stands as seen by
 * an observer, and draws it from above, from the front and from the right.
 *
 * A host of kxmaths5: all geometry is the library's.
 */
#include "failure.h"
#include "names.h"
#include "options.h"
#include "placement.h"
#include "png_file.h"
#include "sheet.h"

#include <cstdio>
#include <filesystem>
#include <iostream>

namespace
{

/** Where Debian's glmark2-data puts it. */
constexpr const char *bunny = "/usr/share/glmark2/models/bunny.obj";

example::Mesh load(const std::string &path)
{
    if (!path.empty()) {
        return example::read_obj(path);
    }
    if (std::filesystem::exists(bunny)) {
        return example::read_obj(bunny);
    }
    std::cout << "No mesh was named and " << bunny
              << " is not there (package glmark2-data), so this is a trefoil knot.\n";
    return example::trefoil();
}

void run(const example::Options &options)
{
    const example::Placement placement = example::place(load(options.mesh), options);
    const auto lines = example::report(placement, options);
    const example::Picture picture =
        example::draw_sheet(placement, lines, example::unit_symbol(options.to));
    example::write_png(options.picture, picture);
    for (const example::ReportLine &line : lines) {
        std::printf("%-14s %s\n", line.title.c_str(), line.text.c_str());
    }
    std::printf("%-14s %s, %d x %d pixels\n", "picture", options.picture.c_str(), picture.width,
                picture.height);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        if (const auto options = example::read_options(argc, argv)) {
            run(*options);
        }
        if (std::fflush(stdout) != 0 || !std::cout.flush()) {
            throw example::Failure("the report cannot be written");
        }
        return 0;
    } catch (const std::exception &error) {
        std::cerr << "place_mesh: " << error.what() << '\n';
        return 1;
    }
}
