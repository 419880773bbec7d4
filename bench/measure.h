/* Google Benchmark, driven so that what is compared is measured close together. */
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/** One of several ways to do the same work. */
struct Contender {
    std::string name;
    std::function<void(int thread)> run;
    std::size_t items; /**< Calls or points in one run of one thread. */
    int threads = 1;
};

enum class Clock {
    processor, /**< Time on the processor: others that run on the machine count less. */
    wall,      /**< The only clock that shows whether threads work at the same time. */
};

/** Nanoseconds per item, one value for each repetition. */
using Times = std::vector<double>;

/**
 * Measures the contenders in turn, and does that again and again: repetition i of one lies some
 * milliseconds from repetition i of the other, so the ratio of the two feels little of what else
 * goes on. Every other turn runs backwards, so that no contender always follows the same one.
 */
std::vector<Times> measure(const std::vector<Contender> &contenders, int repetitions,
                           Clock clock = Clock::processor);

/** The value below which a share of the values lies, interpolated; 0.5 gives the median. */
double quantile(std::vector<double> values, double share);

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

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
