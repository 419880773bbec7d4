/*
 * Measures how far the library's results are from the true values, worked out with 113 bits, and
 * prints the rows of worst_errors.txt. With --check it prints none: it fails when an error is above
 * the one in the file, when the file's own input doesn't give it, and for a function that is
 * neither measured nor named below.
 */
#include "experiment.h"

#include "support/catalogue.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>

namespace
{

using namespace accuracy;

/* Why a function needs no measurement. */
constexpr const char *as_another = "does what a measured function does, with the same bits";
constexpr const char *one_rounding = "one rounding: half an ulp, and 2^-29 of one";
constexpr const char *nothing_rounded = "nothing is rounded";
constexpr const char *no_number = "counts, bits and verdicts";

struct Unmeasured {
    const char *reason, *names;
};
constexpr Unmeasured unmeasured[] = {
    {as_another, " KXM3NP2I1 KXM4NP3I0 KXM4NP3I1 KXM4NP4 KXTransformLine KXP3ChangeUnits "
                 "KXP4ChangeUnits KXBoxChangeUnits KXPlaneChangeUnits KXM4ChangeUnits "
                 "KXP3ChangeNUnits KXP4ChangeNUnits KXPlaneChangeNUnits "},
    {one_rounding, " KXV3Cross KXV3Combine KXM3P2I0 KXM3NP2I0 KXM4Add KXM3Add KXBoxMidPoint "
                   "KXBoxDiagonal "},
    {nothing_rounded, " KXM4Unit KXM3Unit KXM4Transpose KXM3Transpose KXM4Copy KXM3Copy KXM4Scale "
                      "KXM4Translate KXM4RotateX2 KXM4RotateY2 KXM4RotateZ2 KXM4ShearXY2 "
                      "KXM4ShearXZ2 KXM4ShearYZ2 KXM3Scale KXM3Translate KXM3Rotate2 "
                      "KXPutPointInBox KXCombineBoxes "},
    {no_number, " KXBitCount KXLSB KXMSB KXM4IsUnit KXM3IsUnit KXM4IsOrthogonal KXIsValidBox "},
};

/** Why a function is not measured; empty if it is. */
std::string reason_for(const std::string &function)
{
    for (const Experiment &experiment : all_experiments()) {
        // A name may have a comma and a case after it.
        if ((std::string(experiment.function) + ',').rfind(function + ',', 0) == 0) {
            return "";
        }
    }
    for (const auto &[reason, names] : unmeasured) {
        if (std::string(names).find(' ' + function + ' ') != std::string::npos) {
            return reason;
        }
    }
    throw std::runtime_error(function + " is not measured, and nothing says why");
}

/** Four digits, rounded upwards: what it bounds stays below it. */
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

/** The columns that say what was measured. */
std::string key_of(const Experiment &experiment, const Result &result)
{
    return std::string(experiment.function) + '\t' + experiment.inputs + '\t' + result.name + '\t' +
           result.unit + '\t';
}

void print(const Experiment &experiment, std::uint64_t inputs)
{
    constexpr double doubles_in_a_single = 536870912; // 2^29: ulps of a double in one of a single
    const Measurement worst = measure(experiment, inputs);
    for (std::size_t i = 0; i < worst.size(); ++i) {
        const Result &result = experiment.results[i];
        std::printf("%s%s\t%s\t%llu\t%s\n", key_of(experiment, result).c_str(),
                    rounded_up(worst[i].ulps).c_str(),
                    result.is_double ? rounded_up(worst[i].ulps * doubles_in_a_single).c_str() : "",
                    static_cast<unsigned long long>(worst[i].input),
                    replayed(experiment, worst[i].input).description.c_str());
    }
    std::fflush(stdout);
}

/** What the file says of one result. */
struct Row {
    std::string error;
    std::uint64_t input = 0;
};

std::map<std::string, Row> read_rows(const std::string &path)
{
    static const std::regex form("((?:[^\t]*\t){4})([^\t]*)\t[^\t]*\t([0-9]+)\t.*");
    std::ifstream file(path);
    std::map<std::string, Row> rows;
    std::smatch match;
    for (std::string line; std::getline(file, line);) {
        if (std::regex_match(line, match, form)) {
            rows[match[1]] = {match[2], std::stoull(match[3])};
        }
    }
    if (rows.empty()) {
        throw std::runtime_error(path + " has no rows");
    }
    return rows;
}

bool complain(const std::string &about, const std::string &what)
{
    std::fprintf(stderr, "%s%s\n", about.c_str(), what.c_str());
    return false;
}

/** The first inputs stay within each result's row, and the row's own input gives exactly its error.
 */
bool holds(const Experiment &experiment, std::uint64_t inputs, std::map<std::string, Row> &rows)
{
    const Measurement worst = measure(experiment, inputs);
    bool all_hold = true;
    for (std::size_t i = 0; i < worst.size(); ++i) {
        const std::string key = key_of(experiment, experiment.results[i]);
        const auto row = rows.find(key);
        if (row == rows.end()) {
            all_hold = complain(key, "has no row");
            continue;
        }
        const auto &[error, input] = row->second;
        const std::string again = rounded_up(replayed(experiment, input).errors[i]);
        if (!(worst[i].ulps <= std::strtod(error.c_str(), nullptr))) {
            all_hold =
                complain(key, "input " + std::to_string(worst[i].input) + " has an error of " +
                                  rounded_up(worst[i].ulps) + ", above " + error);
        } else if (again != error) {
            all_hold = complain(key, "input " + std::to_string(input) + " has an error of " +
                                         again + ", not " + error);
        }
        rows.erase(row);
    }
    return all_hold;
}

bool check(const Experiments &experiments, std::uint64_t inputs, const std::string &path,
           const std::regex &filter)
{
    std::map<std::string, Row> rows = read_rows(path);
    const std::size_t count = rows.size();
    bool all_hold = true;
    for (const Experiment &experiment : experiments) {
        all_hold = holds(experiment, inputs, rows) && all_hold;
    }
    for (const auto &[key, row] : rows) {
        if (std::regex_search(key.substr(0, key.find('\t')), filter)) {
            all_hold = complain(key, "is a row that is not measured");
        }
    }
    if (all_hold) {
        std::printf("%zu rows of %s hold for the first %llu inputs\n", count - rows.size(),
                    path.c_str(), static_cast<unsigned long long>(inputs));
    }
    return all_hold;
}

Experiments chosen(const std::regex &filter)
{
    Experiments experiments;
    for (const Experiment &experiment : all_experiments()) {
        if (std::regex_search(experiment.function, filter)) {
            experiments.push_back(experiment);
        }
    }
    if (experiments.empty()) {
        throw std::invalid_argument("no function's name matches");
    }
    return experiments;
}

void print_all(const Experiments &experiments, std::uint64_t inputs, bool is_complete)
{
    std::puts("function\tinputs\tresult\tulp of\tworst error\tulp of a double\tinput\targuments");
    for (const Experiment &experiment : experiments) {
        print(experiment, inputs);
    }
    if (is_complete) {
        catalogue::for_every_function([](const auto &entry) {
            const std::string reason = reason_for(entry.name);
            if (!reason.empty()) {
                std::printf("%s\t%s\n", entry.name, reason.c_str());
            }
        });
    }
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("Measures how far results are from the true values.", "accuracy");
    std::uint64_t inputs = 2000000;
    bool checks = false;
    std::string pattern;
    app.add_option("--inputs", inputs, "How many inputs each function is given")
        ->check(CLI::Range(std::uint64_t(1), std::uint64_t(1000000000)))
        ->capture_default_str();
    app.add_flag("--check", checks, "Holds the results to tools/accuracy/worst_errors.txt");
    app.add_option("FILTER", pattern, "A regular expression, looked for in the functions' names");
    CLI11_PARSE(app, argc, argv);
    try {
        const std::regex filter(pattern);
        catalogue::for_every_function([](const auto &entry) { reason_for(entry.name); });
        if (checks) {
            return check(chosen(filter), inputs, KX_WORST_ERRORS, filter) ? 0 : 1;
        }
        print_all(chosen(filter), inputs, pattern.empty());
        return 0;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "accuracy: %s\n", failure.what());
        return 1;
    }
}
