/*
 * Measures how far the library's results are from the true values, worked out with 113 bits.
 *
 *     accuracy [--inputs N] [--check FILE] [FILTER]
 *
 * Prints the tables of docs/accuracy.md. With --check it prints none: it fails when an error is
 * above the one that the file's table has, or the table's own input doesn't give it.
 */
#include "check.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <regex>
#include <stdexcept>

namespace
{

using namespace accuracy;

std::vector<Topic> topics(const std::regex &filter)
{
    std::vector<Topic> chosen = {{"Vectors, scalars and length units", foundations()},
                                 {"Determinants, products and points", matrices()},
                                 {"Inversion", inverses()},
                                 {"Orientation, position and viewing", orientation()},
                                 {"Decomposition", decomposition()},
                                 {"Components", components()},
                                 {"Quaternions", quaternions()},
                                 {"Boxes, lines and rays", boxes()},
                                 {"Triangles and planes", planes()},
                                 {"Polar measures", polar()}};
    for (Topic &topic : chosen) {
        Experiments &all = topic.experiments;
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [&filter](const Experiment &experiment) {
                                     return !std::regex_search(experiment.function, filter);
                                 }),
                  all.end());
    }
    chosen.erase(std::remove_if(chosen.begin(), chosen.end(),
                                [](const Topic &topic) { return topic.experiments.empty(); }),
                 chosen.end());
    if (chosen.empty()) {
        throw std::invalid_argument("no function's name matches");
    }
    return chosen;
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("Measures how far results are from the true values.", "accuracy");
    std::uint64_t inputs = 2000000;
    std::string path, pattern;
    app.add_option("--inputs", inputs, "How many inputs each function is given")
        ->check(CLI::Range(std::uint64_t(1), std::uint64_t(1000000000)))
        ->capture_default_str();
    app.add_option("--check", path, "Holds the results to the tables of this document");
    app.add_option("FILTER", pattern, "A regular expression, looked for in the functions' names");
    CLI11_PARSE(app, argc, argv);
    try {
        const std::regex filter(pattern);
        const std::vector<Topic> chosen = topics(filter);
        if (path.empty()) {
            print_tables(chosen, inputs);
            return 0;
        }
        return check(chosen, inputs, path, filter) ? 0 : 1;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "accuracy: %s\n", failure.what());
        return 1;
    }
}
