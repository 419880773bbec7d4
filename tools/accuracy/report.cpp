#include "report.h"

#include <cstdio>
#include <sstream>

namespace accuracy
{
namespace
{

constexpr double doubles_in_a_single = 536870912; // 2^29: ulps of a double in one of a single

/** Cuts a list of words into lines. */
std::string wrapped(const std::string &words)
{
    constexpr std::size_t width = 100;
    std::istringstream stream(words);
    std::string text, line, word;
    while (stream >> word) {
        if (line.size() + word.size() + 1 > width) {
            text += "   " + line + "\n";
            line.clear();
        }
        line += " " + word;
    }
    return text + "   " + line + "\n";
}

void print_table_head(const char *title)
{
    std::printf("\n### %s\n\n"
                "| function | inputs | result | ulp of | worst error | ulp of a double | input |\n"
                "|---|---|---|---|---:|---:|---:|\n",
                title);
}

void print_rows(const Experiment &experiment, const Measurement &worst)
{
    for (std::size_t i = 0; i < worst.size(); ++i) {
        const Result &result = experiment.results[i];
        const double ulps = worst[i].ulps;
        std::printf("%s%s | %s | %llu |\n", row_key(experiment, result).c_str(),
                    rounded_up(ulps).c_str(),
                    result.is_double ? rounded_up(ulps * doubles_in_a_single).c_str() : "",
                    static_cast<unsigned long long>(worst[i].input));
    }
}

void print_inputs(const Experiment &experiment, const Measurement &worst)
{
    for (std::size_t i = 0; i < worst.size(); ++i) {
        const Case one = replayed(experiment, worst[i].input);
        std::printf("%s, %s, input %llu:\n%s", experiment.function, experiment.results[i].name,
                    static_cast<unsigned long long>(worst[i].input),
                    wrapped(one.description).c_str());
    }
}

} // namespace

std::string rounded_up(double error)
{
    if (error == 0 || std::isinf(error)) {
        return error == 0 ? "0" : "inf";
    }
    const double step = std::pow(10.0, std::floor(std::log10(error)) - 3);
    char text[32];
    std::snprintf(text, sizeof text, error < 1000 ? "%.4g" : "%.0f",
                  std::ceil(error / step) * step);
    return text;
}

std::string row_key(const Experiment &experiment, const Result &result)
{
    return std::string("| ") + experiment.function + column_separator + experiment.inputs +
           column_separator + result.name + column_separator + result.unit + column_separator;
}

void print_tables(const std::vector<Topic> &topics, std::uint64_t inputs)
{
    std::vector<std::pair<Experiment, Measurement>> measured;
    for (const Topic &topic : topics) {
        print_table_head(topic.title);
        for (const Experiment &experiment : topic.experiments) {
            measured.emplace_back(experiment, measure(experiment, inputs));
            print_rows(experiment, measured.back().second);
            std::fflush(stdout);
        }
    }
    std::printf("\n### The inputs of the worst errors\n\n```text\n");
    for (const auto &[experiment, worst] : measured) {
        print_inputs(experiment, worst);
    }
    std::printf("```\n");
}

} // namespace accuracy
