#include "options.h"

#include "failure.h"
#include "names.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cmath>
#include <iostream>

namespace example
{

namespace
{

using Triple = std::array<float, 3>;

constexpr float radians_per_degree = 0.017453292519943295f;

/** Three floats behind one option, and not a fourth: a file name may follow. */
void add_triple(CLI::App &app, const std::string &name, Triple &triple, const std::string &help)
{
    app.add_option(name, triple, help)->type_name("NUMBERS");
}

bool all_finite(const Triple &triple)
{
    return std::isfinite(triple[0]) && std::isfinite(triple[1]) && std::isfinite(triple[2]);
}

} // namespace

std::optional<Options> read_options(int argc, char **argv)
{
    Options options;
    std::string from = "m", to = "m";
    Triple position = {}, degrees = {}, observer = {};

    CLI::App app{"Places a mesh, tells where it stands, and draws it from three sides."};
    app.add_option("mesh", options.mesh, "OBJ file (default: a bunny, or a knot without it)")
        ->type_name("FILE");
    app.add_option("-o,--output", options.picture, "picture to write")
        ->type_name("PNG")
        ->capture_default_str();
    app.add_option("--from", from,
                   "length unit that the file is in: none, mm, cm, m, km, in, ft, "
                   "yd, mi or nmi")
        ->type_name("UNIT")
        ->capture_default_str();
    app.add_option("--to", to, "length unit to work in; all lengths below are in it")
        ->type_name("UNIT")
        ->capture_default_str();
    add_triple(app, "--position", position, "where the mesh's origin goes");
    add_triple(app, "--rotate", degrees, "how far it is turned about X, Y and Z, in degrees");
    app.add_option("--order", options.order_name,
                   "order of the rotations, the last letter acts first: XYZ, XZY, YXZ, YZX, ZXY "
                   "or ZYX")
        ->type_name("ORDER")
        ->capture_default_str();
    add_triple(app, "--observer", observer, "where it is seen from");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        std::cout << app.help();
        return std::nullopt;
    } catch (const CLI::ParseError &error) {
        throw Failure(error.what());
    }

    if (!all_finite(position) || !all_finite(degrees) || !all_finite(observer)) {
        throw Failure("--position, --rotate and --observer take finite numbers");
    }
    options.from = unit_named(from);
    options.to = unit_named(to);
    options.order = order_named(options.order_name);
    options.position = {position[0],
                        position[1],
                        position[2],
                        degrees[0] * radians_per_degree,
                        degrees[1] * radians_per_degree,
                        degrees[2] * radians_per_degree};
    options.observer = {observer[0], observer[1], observer[2]};
    return options;
}

} // namespace example
