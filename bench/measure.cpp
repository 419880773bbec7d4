#include "bench.h"

#include <kxmaths5/matrix.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numeric>

namespace
{

/** Long enough for the clock, short enough for the pairs to lie close together. */
constexpr double seconds_per_repetition = 0.005;

/** What one benchmark of a turn came to. */
struct Outcome {
    double nanoseconds_per_item;
    benchmark::IterationCount iterations;
};

/** Gathers instead of printing. */
class Collector : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override
    {
        return true;
    }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            outcomes.push_back({1e9 / run.counters.at("items_per_second").value,
                                run.iterations / std::max<int64_t>(run.threads, 1)});
        }
    }

    std::vector<Outcome> outcomes;
};

/** With 0 iterations Google Benchmark finds out how many fill the time. */
void add(const Contender &contender, benchmark::IterationCount iterations, Clock clock)
{
    const auto body = [&contender](benchmark::State &state) {
        for (auto _ : state) {
            contender.run(state.thread_index());
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(contender.items));
    };
    auto *registered = benchmark::RegisterBenchmark(contender.name.c_str(), body);
    registered->Threads(contender.threads);
    if (clock == Clock::wall) {
        registered->UseRealTime();
    }
    if (iterations > 0) {
        registered->Iterations(iterations);
    } else {
        registered->MinTime(seconds_per_repetition);
    }
}

/** Runs contenders in the order given by their places; one may come again and again. */
std::vector<Outcome> run(const std::vector<Contender> &contenders,
                         const std::vector<std::size_t> &places,
                         const std::vector<benchmark::IterationCount> &iterations, Clock clock)
{
    benchmark::ClearRegisteredBenchmarks();
    for (const std::size_t place : places) {
        add(contenders[place], iterations[place], clock);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    return collector.outcomes;
}

} // namespace

std::vector<Times> measure(const std::vector<Contender> &contenders, int repetitions, Clock clock)
{
    std::vector<std::size_t> turn(contenders.size());
    std::iota(turn.begin(), turn.end(), 0);
    // The first turn warms up and finds the counts that all the others use.
    std::vector<benchmark::IterationCount> iterations(contenders.size(), 0);
    const std::vector<Outcome> first = run(contenders, turn, iterations, clock);
    for (std::size_t i = 0; i < turn.size(); ++i) {
        iterations[i] = std::max<benchmark::IterationCount>(first.at(i).iterations, 1);
    }

    std::vector<std::size_t> order;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        order.insert(order.end(), turn.begin(), turn.end());
        std::reverse(turn.begin(), turn.end());
    }
    const std::vector<Outcome> outcomes = run(contenders, order, iterations, clock);
    std::vector<Times> times(contenders.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        times[order[i]].push_back(outcomes.at(i).nanoseconds_per_item);
    }
    return times;
}

double quantile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    const double place = share * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(std::floor(place));
    const std::size_t above = std::min(below + 1, values.size() - 1);
    return values[below] + (values[above] - values[below]) * (place - std::floor(place));
}

std::vector<Times> measure_arrays(std::size_t points, const std::vector<int> &threads,
                                  int repetitions)
{
    // Memory of its own for each thread, so that no two of them write to one cache line.
    std::vector<std::array<Memory, 2>> arrays(static_cast<std::size_t>(threads.back()));
    for (auto &[in, out] : arrays) {
        in = allocate(points * sizeof(KXP3));
        out = allocate(points * sizeof(KXP3));
        fill(static_cast<KXP3 *>(in.get()), points);
        std::memcpy(out.get(), in.get(), points * sizeof(KXP3));
    }
    const auto run = [&](int thread) {
        const auto &[in, out] = arrays[static_cast<std::size_t>(thread)];
        KXM4NP3I1(&data().placements.rows[0], static_cast<uint32_t>(points),
                  static_cast<const KXP3 *>(in.get()), static_cast<KXP3 *>(out.get()));
    };
    std::vector<Contender> contenders;
    for (const int n : threads) {
        contenders.push_back({std::to_string(n), run, points, n});
    }
    return measure(contenders, repetitions, Clock::wall);
}
