/*
 * Measures this library next to its peers and by itself, and checks that they do the same job. A
 * check that fails makes the program fail; a goal that is missed does not.
 */
#include "comparisons.h"
#include "measure.h"
#include "report.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <regex>
#include <string>

namespace
{

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
    kernel(work);
    const char *out = static_cast<const char *>(work.out);
    return std::vector<char>(out, out + bytes);
}

void compare(const Comparison &row, int repetitions, Report &report)
{
    const KernelFunction kernel = row.library->find(row.kernel);
    std::vector<Contender> contenders = {
        {row.library->name, [&, kernel](int) { kernel(row.ours); }, row.items()}};
    std::vector<Checks> checks;

    const std::vector<char> ours = results_of(row, kernel, row.ours);
    for (const Peer &peer : row.peers) {
        const KernelFunction theirs = peer.against.find(row.kernel);
        const Work &work = peer.against.is_ours ? row.ours : row.theirs;
        contenders.push_back({peer.against.name, [&, theirs](int) { theirs(work); }, row.items()});
        Checks check;
        if (peer.against.limit == nullptr) {
            const std::vector<char> results = results_of(row, theirs, work);
            check.difference =
                results == ours ? 0.0 : row.difference(ours.data(), results.data(), row.items());
            check.agrees = check.difference <= (peer.against.is_ours ? 0.0 : row.tolerance);
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
    const Contender contender = {row.name, [&](int) { row.run(); }, row.items};
    report.add(row, measure({contender}, repetitions).front());
}

/** Returns whether every check passed. */
bool run(int repetitions, const std::regex &filter)
{
    const auto is_wanted = [&](const std::string &name) { return std::regex_search(name, filter); };
    Report report(KX_BENCH_INSTRUCTION_SET, repetitions);
    for (const Comparison &row : all_comparisons()) {
        if (is_wanted(row.operation)) {
            compare(row, repetitions, report);
        }
    }
    for (const Function &row : all_functions()) {
        if (is_wanted(row.name)) {
            measure_alone(row, repetitions, report);
        }
    }
    if (is_wanted("scale")) {
        for (const Scale &scale : measure_scale(repetitions)) {
            report.add(scale);
        }
    }
    return report.end();
}

} // namespace

int main(int count, char **arguments)
{
    CLI::App app("Measures the library next to its peers, and prints the tables.", "bench");
    int repetitions = 31;
    std::string filter;
    app.add_option("--repetitions", repetitions)->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("FILTER", filter,
                   "a regular expression, looked for in the rows' names; \"scale\" is the table of "
                   "many points and threads");
    try {
        app.parse(count, arguments);
        return run(repetitions, std::regex(filter, std::regex::icase)) ? 0 : 1;
    } catch (const CLI::ParseError &problem) {
        return app.exit(problem);
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "bench: %s\n", problem.what());
        return 1;
    }
}
