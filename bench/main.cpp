/*
 * Measures this library next to its peers and by itself, and checks that they do the same job. A
 * check that fails makes the program fail; a goal that is missed does not.
 */
#include "bench.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <utility>

namespace
{

/** The family only: what the ratios depend on, and nothing that identifies the machine. */
struct Processor {
    const char *family;
    bool has_avx2;
};

Processor processor()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f")) {
        return {"x86-64 with AVX-512", true};
    }
    if (__builtin_cpu_supports("avx2")) {
        return {"x86-64 with AVX2", true};
    }
    return {"x86-64 without AVX2", false};
#elif defined(__aarch64__)
    return {"AArch64", false};
#else
    return {"an unnamed processor", false};
#endif
}

std::string text(const char *format, double value)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

/** Three digits, whether it is a tenth of a nanosecond or a thousand. */
std::string nanoseconds(double value)
{
    return text(value < 10.0 ? "%.2f" : value < 100.0 ? "%.1f" : "%.0f", value);
}

std::string ratio(double value)
{
    return text("%.2f", value);
}

/** Times of one contender divided by those of another, repetition by repetition. */
Times ratios(const Times &times, const Times &others)
{
    Times result;
    std::transform(times.begin(), times.end(), others.begin(), std::back_inserter(result),
                   std::divides());
    return result;
}

/** A table in Markdown. Its head comes with the first line, so a filter leaves no empty table. */
class Table
{
public:
    explicit Table(std::string title_and_columns) : head(std::move(title_and_columns)) {}

    void add(const std::vector<std::string> &cells)
    {
        std::printf("%s|", std::exchange(head, "").c_str());
        for (const std::string &cell : cells) {
            std::printf(" %s |", cell.c_str());
        }
        std::puts("");
        std::fflush(stdout);
    }

private:
    std::string head;
};

/** What all rows came to. */
struct Counts {
    int goals = 0, met = 0, failed_checks = 0;

    /** What a check that fails adds to its cell. */
    const char *check(bool passed, const char *failure)
    {
        failed_checks += !passed;
        return passed ? "" : failure;
    }
};

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

/** Adds a line for each peer. Missed goals are reported, and are no failure. */
void compare(const Comparison &row, int repetitions, bool has_vectors, Table &table, Counts &counts)
{
    const KernelFunction kernel = row.library->find(row.kernel);
    std::vector<Contender> contenders = {
        {row.library->name, [&, kernel](int) { kernel(row.ours); }, row.items()}};
    std::vector<std::string> differences;

    const std::vector<char> ours = results_of(row, kernel, row.ours);
    for (const Peer &peer : row.peers) {
        const KernelFunction theirs = peer.against.find(row.kernel);
        const Work &work = peer.against.is_ours ? row.ours : row.theirs;
        contenders.push_back({peer.against.name, [&, theirs](int) { theirs(work); }, row.items()});
        differences.push_back("");
        if (peer.against.limit == nullptr) {
            const std::vector<char> results = results_of(row, theirs, work);
            const double difference =
                results == ours ? 0.0 : row.difference(ours.data(), results.data(), row.items());
            const bool agrees = difference <= (peer.against.is_ours ? 0.0 : row.tolerance);
            differences.back() = text("%.1e", difference) + counts.check(agrees, " **too much**");
        }
    }
    std::string bits = "";
    if (row.has_bits_of_single_calls) {
        row.reset();
        const bool same = row.has_bits_of_single_calls();
        row.reset();
        bits = same ? "as single calls" : counts.check(same, "**other than single calls**");
    }

    const std::vector<Times> times = measure(contenders, repetitions);
    for (std::size_t i = 0; i < row.peers.size(); ++i) {
        const Peer &peer = row.peers[i];
        const Times to_peer = ratios(times[0], times[i + 1]);
        const double limit = has_vectors ? peer.goal : peer.baseline_goal;
        std::string goal = "";
        if (limit > 0.0) {
            const bool is_met = median(to_peer) <= limit;
            ++counts.goals;
            counts.met += is_met;
            goal = ratio(limit) + (is_met ? " met" : " **missed**");
        }
        table.add({row.operation, nanoseconds(median(times[0])), peer.against.name,
                   nanoseconds(median(times[i + 1])), ratio(median(to_peer)),
                   ratio(quantile(to_peer, 0.1)), goal, differences[i], bits});
    }
}

void measure_alone(const Function &row, int repetitions, Table &table)
{
    const Times times =
        measure({{row.name, [&](int) { row.run(); }, row.items}}, repetitions).front();
    table.add({"`" + std::string(row.name) + "`", nanoseconds(median(times)),
               nanoseconds(quantile(times, 0.1)), row.unit});
}

/** How long arrays of one size take with one thread, and how much more is done by more threads. */
void scale(std::size_t points, const std::vector<int> &threads, int repetitions, Table &table)
{
    const std::vector<Times> times = measure_arrays(points, threads, repetitions);
    std::vector<std::string> cells = {std::to_string(points), nanoseconds(median(times[0]))};
    for (std::size_t i = 1; i < times.size(); ++i) {
        cells.push_back(ratio(median(ratios(times[0], times[i]))));
    }
    table.add(cells);
}

/** 1, 2, 4 and so on, and as many as the machine runs at once, but no more than 16. */
std::vector<int> thread_counts()
{
    const int most = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 16);
    std::vector<int> counts = {1};
    while (counts.back() < most) {
        counts.push_back(std::min(2 * counts.back(), most));
    }
    return counts;
}

/** Returns whether every check passed. */
bool run(int repetitions, const std::regex &filter)
{
    const auto is_wanted = [&](const std::string &name) { return std::regex_search(name, filter); };
    const Processor here = processor();
    const std::string instruction_set = KX_BENCH_INSTRUCTION_SET;
    std::printf("Measured on %s, the library built with the instruction set `%s`; %d repetitions "
                "of each pair.\n",
                here.family, instruction_set.c_str(), repetitions);

    Counts counts;
    Table comparisons("\n### Side by side\n\n"
                      "| operation | ns | peer | its ns | ratio | 10th percentile | goal | results "
                      "differ by | bits |\n"
                      "|---|---:|---|---:|---:|---:|---|---:|---|\n");
    for (const Comparison &row : all_comparisons()) {
        if (is_wanted(row.operation)) {
            compare(row, repetitions, here.has_avx2 && instruction_set != "baseline", comparisons,
                    counts);
        }
    }

    Table functions("\n### Every function\n\n"
                    "| function | ns | 10th percentile | for each |\n"
                    "|---|---:|---:|---|\n");
    for (const Function &row : all_functions()) {
        if (is_wanted(row.name)) {
            measure_alone(row, repetitions, functions);
        }
    }

    if (is_wanted("scale")) {
        const std::vector<int> threads = thread_counts();
        std::string columns = "| points a thread | ns a point, one thread |", rule = "|---:|---:|";
        for (std::size_t i = 1; i < threads.size(); ++i) {
            columns += " throughput, " + std::to_string(threads[i]) + " threads |";
            rule += "---:|";
        }
        Table scales("\n### Many points, many threads\n\n" + columns + "\n" + rule + "\n");
        for (const std::size_t points : {1000, 10000, 100000, 1000000, 10000000}) {
            scale(points, threads, repetitions, scales);
        }
    }
    std::printf("\n%d of %d goals met; %d failed checks.\n", counts.met, counts.goals,
                counts.failed_checks);
    return counts.failed_checks == 0;
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
