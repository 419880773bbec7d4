/* What is measured: a function, the inputs that it is given, and those results that are compared.
 */
#ifndef KX_ACCURACY_EXPERIMENT_H
#define KX_ACCURACY_EXPERIMENT_H

#include "numbers.h"

#include <array>
#include <charconv>
#include <cstring>
#include <string>
#include <vector>

namespace accuracy
{

constexpr std::size_t most_results = 4;

/** One input: where it is drawn from, and what came of it. */
class Case
{
public:
    Case(std::uint64_t seed, std::uint64_t number, bool is_described = false)
        : random(seed + number * 0xd1342543de82ef95U), is_described(is_described)
    {
    }

    Random random;

    /** The largest error of each result, in ulp of a single. */
    std::array<double, most_results> errors{};
    std::string description;

    /** Notes what the function is given: records of floats, floats and words. */
    template <typename... Records>
    void given(const Records &...records)
    {
        if (is_described) {
            description.clear();
            (describe(records), ...);
        }
    }

    /** `unit` is the value whose ulp counts the error. */
    void error(std::size_t result, Quad got, Quad wanted, Quad unit)
    {
        const double ulps = static_cast<double>(fabsq(got - wanted) / ulp(unit));
        // A NaN would be above nothing.
        errors[result] = std::max(errors[result], std::isnan(ulps) ? HUGE_VAL : ulps);
    }
    void error(std::size_t result, Quad got, Quad wanted)
    {
        error(result, got, wanted, wanted);
    }

    /** Each element, by the ulp of one value or of its own. */
    template <typename Elements>
    void error(std::size_t result, const Elements &got, const Elements &wanted, Quad unit)
    {
        for (Eigen::Index i = 0; i < wanted.size(); ++i) {
            error(result, got(i), wanted(i), unit);
        }
    }
    template <typename Elements>
    void error(std::size_t result, const Elements &got, const Elements &wanted)
    {
        for (Eigen::Index i = 0; i < wanted.size(); ++i) {
            error(result, got(i), wanted(i));
        }
    }
    /** Each element, by the ulp of the largest in its row. */
    template <typename Elements>
    void error_by_rows(std::size_t result, const Elements &got, const Elements &wanted)
    {
        for (Eigen::Index r = 0; r < wanted.rows(); ++r) {
            const Quad unit = largest(wanted.row(r));
            for (Eigen::Index c = 0; c < wanted.cols(); ++c) {
                error(result, got(r, c), wanted(r, c), unit);
            }
        }
    }

    /** An angle, by the ulp of 1; pi and -pi are one angle. */
    void angle_error(std::size_t result, Quad got, Quad wanted)
    {
        const Quad difference = remainderq(got - wanted, 2 * exact_pi);
        error(result, difference, 0, 1);
    }

private:
    template <typename Number>
    void describe_number(Number value)
    {
        char text[32];
        const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
        description.append(description.empty() ? "" : " ").append(text, end.ptr);
    }
    void describe(std::uint32_t value)
    {
        describe_number(value);
    }
    template <typename Record>
    void describe(const Record &record)
    {
        std::array<float, sizeof(Record) / sizeof(float)> values;
        std::memcpy(values.data(), &record, sizeof record);
        for (const float value : values) {
            describe_number(value);
        }
    }

    bool is_described;
};

/** What is compared. */
struct Result {
    const char *name;
    const char *unit; /**< Of which value an ulp is meant. */
    bool is_double = false;
};

constexpr const char *itself = "itself";

struct Experiment {
    const char *function;
    const char *inputs;
    std::vector<Result> results;
    /** Draws an input, calls the function and compares; false has another input drawn. */
    bool (*run)(Case &);
};

using Experiments = std::vector<Experiment>;

Experiments foundations();
Experiments matrices();
Experiments inverses();
Experiments orientation();
Experiments decomposition();
Experiments quaternions();
Experiments polar();
Experiments spatial();

Experiments all_experiments();

/** The largest error of a result, in ulp of a single, and the number of the input that gave it. */
struct Worst {
    double ulps = -1;
    std::uint64_t input = 0;
};

using Measurement = std::vector<Worst>; /**< One for each result of an experiment. */

/** The inputs numbered from 0 to below `inputs`: those of a smaller count are among them. */
Measurement measure(const Experiment &experiment, std::uint64_t inputs);

/** One input again, with what the function is given. */
Case replayed(const Experiment &experiment, std::uint64_t input);

} // namespace accuracy

#endif
