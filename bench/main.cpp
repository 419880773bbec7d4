/*
 * Measures this library next to its peers and by itself, and checks that they do the same job. A
 * check that fails makes the program fail; a goal that is missed does not.
 */
#include "bench.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <regex>
#include <string>

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

/** Three digits, whether it is a tenth of a nanosecond or a thousand. */
std::string nanoseconds(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", value < 10.0 ? 2 : value < 100.0 ? 1 : 0, value);
    return text;
}

std::string ratio(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

void begin_comparisons()
{
    std::printf("\n### Side by side\n\n"
                "| operation | ns | peer | its ns | ratio | 10th percentile | goal | results "
                "differ by | bits |\n"
                "|---|---:|---|---:|---:|---:|---|---:|---|\n");
}

void begin_functions()
{
    std::printf("\n### Every function\n\n"
                "| function | ns | 10th percentile | for each |\n"
                "|---|---:|---:|---|\n");
}

void begin_scale()
{
    std::printf("\n### Many points, many threads\n\n| points a thread | ns a point, one thread |");
    const std::vector<int> threads = thread_counts();
    for (std::size_t i = 1; i < threads.size(); ++i) {
        std::printf(" throughput, %d threads |", threads[i]);
    }
    std::printf("\n|---:|---:|");
    for (std::size_t i = 1; i < threads.size(); ++i) {
        std::printf("---:|");
    }
    std::printf("\n");
}

/** What a row's checks came to. */
struct Checks {
    double difference = 0.0;
    bool agrees = true;
    bool same_bits = true;
};

/** The tables, in Markdown, line by line as the measurements come in. */
class Report
{
public:
    /** Tells the processor's family, and which goals count: those for vectors or the others. */
    Report(const std::string &instruction_set, int repetitions);

    void add(const Comparison &row, const Peer &peer, const Times &ours, const Times &theirs,
             const Checks &checks);
    void add(const Function &row, const Times &times);
    void add(const Scale &scale);

    /** Returns whether every check passed. Missed goals are reported, and are no failure. */
    bool end() const;

private:
    /** Each table begins with the first of its rows, so a filter leaves no empty ones. */
    enum class Table { none, comparisons, functions, scale };
    bool begins(Table next);

    Table table = Table::none;
    bool has_vectors;
    int goals = 0, met = 0, failed_checks = 0;
};

Report::Report(const std::string &instruction_set, int repetitions)
{
    const Processor here = processor();
    has_vectors = here.has_avx2 && instruction_set != "baseline";
    std::printf("Measured on %s, the library built with the instruction set `%s`; %d repetitions "
                "of each pair.\n",
                here.family, instruction_set.c_str(), repetitions);
}

bool Report::begins(Table next)
{
    const bool is_new = next != table;
    table = next;
    return is_new;
}

void Report::add(const Comparison &row, const Peer &peer, const Times &ours, const Times &theirs,
                 const Checks &checks)
{
    if (begins(Table::comparisons)) {
        begin_comparisons();
    }
    Times ratios;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        ratios.push_back(ours[i] / theirs[i]);
    }
    const double middle = median(ratios);

    const double limit = has_vectors ? peer.goal : peer.baseline_goal;
    std::string goal = "";
    if (limit > 0.0) {
        const bool is_met = middle <= limit;
        ++goals;
        met += is_met;
        goal = ratio(limit) + (is_met ? " met" : " **missed**");
    }
    std::string difference = "";
    if (peer.against.limit == nullptr) {
        char text[48];
        std::snprintf(text, sizeof text, "%.1e%s", checks.difference,
                      checks.agrees ? "" : " **too much**");
        difference = text;
        failed_checks += !checks.agrees;
    }
    std::string bits = "";
    if (row.has_bits_of_single_calls) {
        bits = checks.same_bits ? "as single calls" : "**other than single calls**";
        failed_checks += !checks.same_bits;
    }
    std::printf("| %s | %s | %s | %s | %s | %s | %s | %s | %s |\n", row.operation.c_str(),
                nanoseconds(median(ours)).c_str(), peer.against.name,
                nanoseconds(median(theirs)).c_str(), ratio(middle).c_str(),
                ratio(quantile(ratios, 0.1)).c_str(), goal.c_str(), difference.c_str(),
                bits.c_str());
    std::fflush(stdout);
}

void Report::add(const Function &row, const Times &times)
{
    if (begins(Table::functions)) {
        begin_functions();
    }
    std::printf("| `%s` | %s | %s | %s |\n", row.name, nanoseconds(median(times)).c_str(),
                nanoseconds(quantile(times, 0.1)).c_str(), row.unit);
    std::fflush(stdout);
}

void Report::add(const Scale &scale)
{
    if (begins(Table::scale)) {
        begin_scale();
    }
    std::printf("| %zu | %s |", scale.points, nanoseconds(scale.nanoseconds).c_str());
    for (std::size_t i = 1; i < scale.gain.size(); ++i) {
        std::printf(" %s |", ratio(scale.gain[i]).c_str());
    }
    std::printf("\n");
    std::fflush(stdout);
}

bool Report::end() const
{
    std::printf("\n%d of %d goals met; %d failed checks.\n", met, goals, failed_checks);
    return failed_checks == 0;
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
