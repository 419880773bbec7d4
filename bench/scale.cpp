#include "measure.h"

#include "comparisons.h"
#include "data.h"

#include <kxmaths5/matrix.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <thread>

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
