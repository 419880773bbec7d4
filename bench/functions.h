/* Every function of the catalogue by itself. */
#ifndef BENCH_FUNCTIONS_H
#define BENCH_FUNCTIONS_H

#include <cstddef>
#include <functional>
#include <vector>

struct Function {
    const char *name;
    const char *unit;  /**< What the time is given for: a call, or a record of an array. */
    std::size_t items; /**< How many of them a run has. */
    std::function<void()> run;
};

std::vector<Function> all_functions();

#endif
