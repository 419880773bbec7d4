#include "command_line.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <iostream>

namespace example
{

namespace
{

struct UnitName {
    const char *symbol, *name;
};

// By the value of the enumerator.
constexpr std::array<UnitName, 10> units = {{{"none", "none"},
                                             {"mm", "millimetre"},
                                             {"cm", "centimetre"},
                                             {"m", "metre"},
                                             {"km", "kilometre"},
                                             {"in", "inch"},
                                             {"ft", "foot"},
                                             {"yd", "yard"},
                                             {"mi", "mile"},
                                             {"nmi", "nautical-mile"}}};
constexpr std::array<const char *, 6> orders = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};

/** The unit with a short or a long name, such as "mm" or "millimetre". Throws Failure. */
KXUnit unit_named(const std::string &name)
{
    std::string known;
    for (KXUnit unit = 0; unit < units.size(); ++unit) {
        if (name == units[unit].symbol || name == units[unit].name) {
            return unit;
        }
        known += (unit == 0 ? "" : ", ") + std::string(units[unit].symbol);
    }
    throw Failure("there is no unit \"" + name + "\": take one of " + known);
}

/** The order with a name such as "XYZ", in any case. Throws Failure. */
KXRotationOrder order_named(const std::string &name)
{
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const auto found = std::find(orders.begin(), orders.end(), upper);
    if (found == orders.end()) {
        throw Failure("there is no rotation order \"" + name +
                      "\": take one of XYZ, XZY, YXZ, YZX, ZXY, ZYX");
    }
    return static_cast<KXRotationOrder>(found - orders.begin());
}

} // namespace

CommandLine::CommandLine(const std::string &purpose, const std::string &examples) : app(purpose)
{
    app.get_formatter()->column_width(32);
    app.footer("Write three numbers with spaces between them: --rotate 0 45 0\n\nExamples:\n" +
               examples);
    app.add_option(
           "mesh", mesh,
           "OBJ, STL, PLY or glTF file, or another that Assimp reads. Default: the bunny of "
           "the package glmark2-data or, without that, a knot")
        ->type_name("FILE");
    app.add_option("--up", up, "which axis of the file is up: y, or z as in most CAD files")
        ->type_name("AXIS")
        ->check(CLI::IsMember({"y", "z"}))
        ->capture_default_str();
    app.add_option("--from", from,
                   "length unit of the file: none, mm, cm, m, km, in, ft, yd, mi or nmi")
        ->type_name("UNIT")
        ->capture_default_str();
    app.add_option("--to", to, "length unit of the report and of all lengths below")
        ->type_name("UNIT")
        ->capture_default_str();
    add_triple("--position", position, "X Y Z",
               "where the mesh's origin goes, in the unit of --to");
    add_triple("--rotate", degrees, "X Y Z", "rotation about X, Y and Z, in degrees");
    app.add_option("--order", order,
                   "order of the rotations, the last letter acts first: XYZ, XZY, YXZ, YZX, ZXY or "
                   "ZYX")
        ->type_name("ORDER")
        ->capture_default_str();
}

void CommandLine::add_triple(const std::string &name, Triple &triple, const std::string &type,
                             const std::string &help)
{
    app.add_option(name, triple, help)->type_name(type)->type_size(3)->default_str("0 0 0");
    triples.push_back(&triple);
}

void CommandLine::add_picture(std::string &path, const std::string &default_path)
{
    path = default_path;
    picture = &path;
    app.add_option("-o,--output", path, "picture to write, a .png file")
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
        throw Failure(std::string(error.what()) + ". Try --help.");
    }
    for (const Triple *triple : triples) {
        if (!std::all_of(triple->begin(), triple->end(),
                         [](float f) { return std::isfinite(f); })) {
            throw Failure("the options take finite numbers only");
        }
    }
    std::string end = picture->substr(picture->size() - std::min<std::size_t>(picture->size(), 4));
    std::transform(end.begin(), end.end(), end.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (end != ".png") {
        throw Failure("the picture is a PNG file, and " + *picture + " does not end in .png");
    }
    options.mesh = mesh;
    options.z_is_up = up == "z";
    options.from = unit_named(from);
    options.to = unit_named(to);
    options.symbol = options.to == KX_UNIT_NONE ? "" : units[options.to].symbol;
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
