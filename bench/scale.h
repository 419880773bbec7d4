/* Many points, and many threads. */
#ifndef BENCH_SCALE_H
#define BENCH_SCALE_H

#include <cstddef>
#include <vector>

/** How long arrays of one size take, with one thread and with more, each with arrays of its own. */
struct Scale {
    std::size_t points;       /**< In the array of each thread. */
    double nanoseconds;       /**< For a point, with one thread. */
    std::vector<double> gain; /**< Throughput with thread_counts()[i] threads; 1 with one. */
};

/** 1, 2, 4 and so on, and as many as the machine runs at once, but no more than 16. */
std::vector<int> thread_counts();

std::vector<Scale> measure_scale(int repetitions);

#endif
