#include "check.h"

#include "report.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>

namespace accuracy
{
namespace
{

/** What a row of a table says. */
struct Row {
    std::string error;
    std::uint64_t input = 0;
};

/** The rows of a document by their keys. */
std::map<std::string, Row> read_rows(const std::string &path)
{
    const std::string separator = column_separator;
    std::ifstream file(path);
    std::map<std::string, Row> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("| KX", 0) != 0) {
            continue;
        }
        std::size_t end = 0;
        for (int cell = 0; cell < 4 && end != std::string::npos; ++cell) {
            end = line.find(separator, end == 0 ? 0 : end + 1);
        }
        const std::size_t last = line.rfind(separator);
        if (end == std::string::npos || last <= end) {
            throw std::runtime_error(path + ": not a row: " + line);
        }
        end += separator.size();
        rows[line.substr(0, end)] = {
            line.substr(end, line.find(separator, end) - end),
            std::strtoull(line.c_str() + last + separator.size(), nullptr, 10)};
    }
    if (rows.empty()) {
        throw std::runtime_error(path + " has no rows to check");
    }
    return rows;
}

/** One row: the first inputs stay within its error, and its own input gives exactly that. */
bool holds(const Experiment &experiment, std::size_t result, const Worst &worst, const Row &row)
{
    const double bound = std::strtod(row.error.c_str(), nullptr);
    if (!(worst.ulps <= bound)) {
        std::fprintf(stderr, "%s, %s: input %llu has an error of %s, above %s\n",
                     experiment.function, experiment.results[result].name,
                     static_cast<unsigned long long>(worst.input), rounded_up(worst.ulps).c_str(),
                     row.error.c_str());
        return false;
    }
    const std::string again = rounded_up(replayed(experiment, row.input).errors[result]);
    if (again != row.error) {
        std::fprintf(stderr, "%s, %s: input %llu has an error of %s, not %s\n", experiment.function,
                     experiment.results[result].name, static_cast<unsigned long long>(row.input),
                     again.c_str(), row.error.c_str());
        return false;
    }
    return true;
}

} // namespace

bool check(const std::vector<Topic> &topics, std::uint64_t inputs, const std::string &path,
           const std::regex &filter)
{
    std::map<std::string, Row> rows = read_rows(path);
    bool all_hold = true;
    std::size_t held = 0;
    for (const Topic &topic : topics) {
        for (const Experiment &experiment : topic.experiments) {
            const Measurement worst = measure(experiment, inputs);
            for (std::size_t i = 0; i < worst.size(); ++i) {
                const std::string key = row_key(experiment, experiment.results[i]);
                const auto row = rows.find(key);
                if (row == rows.end()) {
                    std::fprintf(stderr, "%s has no row %s\n", path.c_str(), key.c_str());
                    all_hold = false;
                    continue;
                }
                all_hold = holds(experiment, i, worst[i], row->second) && all_hold;
                rows.erase(row);
                ++held;
            }
        }
    }
    for (const auto &[key, row] : rows) {
        const std::string function = key.substr(2, key.find(column_separator) - 2);
        if (std::regex_search(function, filter)) {
            std::fprintf(stderr, "%s has a row that is not measured: %s\n", path.c_str(),
                         key.c_str());
            all_hold = false;
        }
    }
    if (all_hold) {
        std::printf("%zu rows of %s hold for the first %llu inputs\n", held, path.c_str(),
                    static_cast<unsigned long long>(inputs));
    }
    return all_hold;
}

} // namespace accuracy
