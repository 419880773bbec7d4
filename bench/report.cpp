#include "report.h"

#include <cstdio>
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

} // namespace

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
