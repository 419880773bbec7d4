#include "command_line.h"

#include "failure.h"
#include "names.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>

namespace example
{

CommandLine::CommandLine(const std::string &purpose) : app(purpose)
{
    app.add_option("mesh", mesh, "OBJ file (default: a bunny, or a knot without it)")
        ->type_name("FILE");
    app.add_option("--from", from,
                   "length unit that the file is in: none, mm, cm, m, km, in, ft, "
                   "yd, mi or nmi")
        ->type_name("UNIT")
        ->capture_default_str();
    app.add_option("--to", to, "length unit to work in; all lengths below are in it")
        ->type_name("UNIT")
        ->capture_default_str();
    add_triple("--position", position, "where the mesh's origin goes");
    add_triple("--rotate", degrees, "how far it is turned about X, Y and Z, in degrees");
    app.add_option("--order", order,
                   "order of the rotations, the last letter acts first: XYZ, XZY, YXZ, YZX, ZXY "
                   "or ZYX")
        ->type_name("ORDER")
        ->capture_default_str();
}

void CommandLine::add_triple(const std::string &name, Triple &triple, const std::string &help)
{
    app.add_option(name, triple, help)->type_name("NUMBERS");
    triples.push_back(&triple);
}

void CommandLine::add_picture(std::string &path, const std::string &default_path)
{
    path = default_path;
    app.add_option("-o,--output", path, "picture to write")
        ->type_name("PNG")
        ->capture_default_str();
}

bool CommandLine::parse(int argc, char **argv, PlacedMeshOptions &options)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp &) {
        std::cout << app.help();
        return false;
    } catch (const CLI::ParseError &error) {
        throw Failure(error.what());
    }
    for (const Triple *triple : triples) {
        if (!std::all_of(triple->begin(), triple->end(),
                         [](float f) { return std::isfinite(f); })) {
            throw Failure("the options take finite numbers only");
        }
    }
    options.mesh = mesh;
    options.from = unit_named(from);
    options.to = unit_named(to);
    options.order = order_named(order);
    options.order_name = order;
    options.position = {position[0],
                        position[1],
                        position[2],
                        degrees[0] * radians_per_degree,
                        degrees[1] * radians_per_degree,
                        degrees[2] * radians_per_degree};
    return true;
}

int run_example(const char *name, int argc, char **argv, void (*run)(int, char **))
{
    try {
        run(argc, argv);
        if (std::fflush(stdout) != 0 || !std::cout.flush()) {
            throw Failure("the report cannot be written");
        }
        return 0;
    } catch (const std::exception &error) {
        std::cerr << name << ": " << error.what() << '\n';
        return 1;
    }
}

} // namespace example
