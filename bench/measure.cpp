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

/** One turn: every contender once, in the order given by their places. */
std::vector<Outcome> turn(const std::vector<Contender> &contenders,
                          const std::vector<std::size_t> &places,
                          const std::vector<benchmark::IterationCount> &iterations, Clock clock)
{
    benchmark::ClearRegisteredBenchmarks();
    for (const std::size_t place : places) {
        add(contenders[place], iterations[place], clock);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, ".");
    std::vector<Outcome> outcomes(contenders.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        outcomes[places[i]] = collector.outcomes.at(i);
    }
    return outcomes;
}

} // namespace

std::vector<Times> measure(const std::vector<Contender> &contenders, int repetitions, Clock clock)
{
    std::vector<std::size_t> places(contenders.size());
    std::iota(places.begin(), places.end(), 0);
    // The first turn warms up and finds the counts that all the others use.
    std::vector<benchmark::IterationCount> iterations(contenders.size(), 0);
    const std::vector<Outcome> first = turn(contenders, places, iterations, clock);
    for (std::size_t i = 0; i < places.size(); ++i) {
        iterations[i] = std::max<benchmark::IterationCount>(first[i].iterations, 1);
    }

    std::vector<Times> times(contenders.size());
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const std::vector<Outcome> outcomes = turn(contenders, places, iterations, clock);
        for (std::size_t i = 0; i < times.size(); ++i) {
            times[i].push_back(outcomes[i].nanoseconds_per_item);
        }
        std::reverse(places.begin(), places.end());
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
