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

} // namespace example

#endif
