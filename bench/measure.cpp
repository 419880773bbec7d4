#include "bench.h"

#include <kxmaths5/matrix.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <thread>

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
    for (std::size_t i = 0; i < places.size(); ++i) {
        places[i] = i;
    }
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

namespace
{

/** What one thread works on. Memory of its own, so that no two threads write to one cache line. */
struct Arrays {
    Memory in, out;

    explicit Arrays(std::size_t count)
        : in(allocate(count * sizeof(KXP3))), out(allocate(count * sizeof(KXP3)))
    {
        fill(static_cast<KXP3 *>(in.get()), count);
        std::memcpy(out.get(), in.get(), count * sizeof(KXP3));
    }
};

Scale measure_size(std::size_t count, int repetitions)
{
    const std::vector<int> threads = thread_counts();
    const std::vector<Arrays> arrays = [&] {
        std::vector<Arrays> all;
        for (int i = 0; i < threads.back(); ++i) {
            all.emplace_back(count);
        }
        return all;
    }();
    const auto run = [&](int thread) {
        const Arrays &mine = arrays[static_cast<std::size_t>(thread)];
        KXM4NP3I1(&data().placements.rows[0], static_cast<uint32_t>(count),
                  static_cast<const KXP3 *>(mine.in.get()), static_cast<KXP3 *>(mine.out.get()));
    };

    std::vector<Contender> contenders;
    for (const int n : threads) {
        contenders.push_back({std::to_string(n), run, count, n});
    }
    const std::vector<Times> times = measure(contenders, repetitions, Clock::wall);

    Scale scale = {count, median(times[0]), {}};
    for (const Times &with_threads : times) {
        Times gains;
        for (std::size_t i = 0; i < with_threads.size(); ++i) {
            gains.push_back(times[0][i] / with_threads[i]);
        }
        scale.gain.push_back(median(gains));
    }
    return scale;
}

} // namespace

std::vector<int> thread_counts()
{
    const int most = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 16);
    std::vector<int> counts;
    for (int n = 1; n < most; n *= 2) {
        counts.push_back(n);
    }
    counts.push_back(most);
    return counts;
}

std::vector<Scale> measure_scale(int repetitions)
{
    std::vector<Scale> scales;
    for (const std::size_t count : {1000, 10000, 100000, 1000000, 10000000}) {
        scales.push_back(measure_size(count, repetitions));
    }
    return scales;
}
