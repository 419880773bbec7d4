/* What the command lines of the examples have in common. */
#ifndef EXAMPLES_COMMAND_LINE_H
#define EXAMPLES_COMMAND_LINE_H

#include "mesh.h"
#include "report.h"

#include <kxmaths5.h>

#include <CLI/CLI.hpp>

#include <array>
#include <string>

namespace example
{

using Triple = std::array<float, 3>;

constexpr float radians_per_degree = 0.017453292519943295f;

/** A mesh, the unit to work in, and its place. */
struct PlacedMeshOptions {
    std::string mesh; /**< Empty: the default mesh. */
    KXUnit from = KX_UNIT_METRE;
    KXUnit to = KX_UNIT_METRE;
    bool z_is_up = false;                     /**< In the file. */
    KXPosition position = {0, 0, 0, 0, 0, 0}; /**< Angles in radians, as the library wants them. */
    KXRotationOrder order = KX_ORDER_YXZ;
    std::string order_name = "YXZ";
};

/** The mesh that is asked for, with Y up and in the unit to work in. Throws Failure. */
Mesh mesh_for(const PlacedMeshOptions &options);

/**
 * The options for a placed mesh, and the reading of a command line: add it to an app, add more
 * options, and parse. Values that CLI11 can't check are checked after that.
 */
class CommandLine
{
public:
    /** examples: the end of the help text. */
    CommandLine(const std::string &purpose, const std::string &examples);

    /** Three finite floats after one option, and not a fourth: a file name may follow. */
    void add_triple(const std::string &name, Triple &triple, const std::string &type,
                    const std::string &help);

    void add_picture(std::string &path, const std::string &default_path);

    /** False when only help was asked for, which is printed then. Throws Failure. */
    bool parse(int argc, char **argv, PlacedMeshOptions &options);

    CLI::App app;

private:
    std::string from = "m", to = "m", up = "y", order = "YXZ";
    Triple position = {}, degrees = {};
    std::string mesh;
    std::string *picture = nullptr;
    std::vector<const Triple *> triples;
};

/**
 * The main function of an example: runs it and turns a failure into one sentence on stderr and a
 * non-zero exit. `run` takes the command line.
 */
int run_example(const char *name, int argc, char **argv, void (*run)(int, char **));

/** The unit with a short or a long name, such as "mm" or "millimetre". Throws Failure. */
KXUnit unit_named(const std::string &name);

/** The short name of a unit, such as "mm"; empty for KX_UNIT_NONE. */
std::string unit_symbol(KXUnit unit);

/** The order with a name such as "XYZ", in any case. Throws Failure. */
KXRotationOrder order_named(const std::string &name);

} // namespace example

#endif
