/*
 * Measures this library beside its peers and by itself, and checks that they do the same job.
 *
 *     bench [--repetitions N] [FILTER]
 *
 * The filter is a regular expression, looked for in the names of rows; "scale" stands for the table
 * of many points and threads. A check that fails makes the program fail; a goal that is missed does
 * not.
 */
#include "comparison.h"
#include "functions.h"
#include "measure.h"
#include "report.h"
#include "scale.h"

#include "exports.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <stdexcept>
#include <string>

namespace
{

struct Options {
    int repetitions = 31;
    std::regex filter{""};

    bool selects(const std::string &name) const
    {
        return std::regex_search(name, filter);
    }
};

Options read_options(int count, char **arguments)
{
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--repetitions" && i + 1 < count) {
            options.repetitions = std::atoi(arguments[++i]);
        } else if (argument.rfind("-", 0) == 0) {
            throw std::invalid_argument("usage: bench [--repetitions N] [FILTER]");
        } else {
            options.filter = std::regex(argument, std::regex::icase);
        }
    }
    if (options.repetitions < 1) {
        throw std::invalid_argument("the number of repetitions must be above 0");
    }
    return options;
}

/**
 * Runs a kernel from a fresh start, and returns a copy of what it left. Where no operand is
 * restored the results' place is filled with NaN, so that results of the run before can't pass for
 * new ones.
 */
std::vector<char> results_of(const Comparison &row, KernelFunction kernel, const Work &work)
{
    const std::size_t bytes = row.items() * row.bytes;
    if (row.reset) {
        row.reset();
    } else {
        std::memset(work.out, 0xff, bytes);
    }
    kernel(&work);
    const char *out = static_cast<const char *>(work.out);
    return std::vector<char>(out, out + bytes);
}

void compare(const Comparison &row, int repetitions, Report &report)
{
    const KernelFunction kernel = kxmaths5.find(row.kernel);
    std::vector<Contender> contenders = {
        {kxmaths5.name, [&, kernel](int) { kernel(&row.ours); }, row.items()}};
    std::vector<Checks> checks;

    const std::vector<char> ours = results_of(row, kernel, row.ours);
    for (const Peer &peer : row.peers) {
        const KernelFunction theirs = peer.against.find(row.kernel);
        contenders.push_back(
            {peer.against.name, [&, theirs](int) { theirs(&row.theirs); }, row.items()});
        Checks check;
        if (!peer.against.is_limit()) {
            check.difference = row.difference(
                ours.data(), results_of(row, theirs, row.theirs).data(), row.items());
            check.agrees = check.difference <= row.tolerance;
        }
        checks.push_back(check);
    }
    bool same_bits = true;
    if (row.has_bits_of_single_calls) {
        row.reset();
        same_bits = row.has_bits_of_single_calls();
        row.reset();
    }

    const std::vector<Times> times = measure(contenders, repetitions);
    for (std::size_t i = 0; i < row.peers.size(); ++i) {
        checks[i].same_bits = same_bits;
        report.add(row, row.peers[i], times[0], times[i + 1], checks[i]);
    }
}

void measure_alone(const Function &row, int repetitions, Report &report)
{
    const bool same_bits = !row.has_bits_of_single_calls || row.has_bits_of_single_calls();
    const Contender contender = {row.name, [&](int) { row.run(); }, row.items};
    report.add(row, measure({contender}, repetitions).front(), same_bits);
}

Functions all_functions()
{
    Functions functions;
    add_foundations(functions);
    add_matrix(functions);
    add_orientation(functions);
    add_spatial(functions);
    add_polar(functions);

    // A function that the library gains is not to be forgotten here.
    for (const char *exported : exported_names) {
        const auto is_it = [&](const Function &f) { return std::strcmp(f.name, exported) == 0; };
        if (std::count_if(functions.all().begin(), functions.all().end(), is_it) != 1) {
            throw std::logic_error(std::string("not measured once: ") + exported);
        }
    }
    return functions;
}

void run(const Options &options, Report &report)
{
    const Functions functions = all_functions();

    for (const auto &topic : {point_comparisons, matrix_comparisons, spatial_comparisons}) {
        for (const Comparison &row : topic()) {
            if (options.selects(row.operation)) {
                compare(row, options.repetitions, report);
            }
        }
    }
    for (const Function &row : functions.all()) {
        if (options.selects(row.name)) {
            measure_alone(row, options.repetitions, report);
        }
    }
    if (options.selects("scale")) {
        for (const Scale &scale : measure_scale(options.repetitions)) {
            report.add(scale);
        }
    }
}

} // namespace

int main(int count, char **arguments)
{
    try {
        const Options options = read_options(count, arguments);
        Report report(KX_BENCH_INSTRUCTION_SET, options.repetitions);
        run(options, report);
        return report.end() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "bench: %s\n", problem.what());
        return EXIT_FAILURE;
    }
}
