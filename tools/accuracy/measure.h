/* Runs experiments, and finds their worst inputs. */
#ifndef KX_ACCURACY_MEASURE_H
#define KX_ACCURACY_MEASURE_H

#include "experiment.h"

namespace accuracy
{

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
