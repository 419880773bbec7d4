#include "experiment.h"

#include <future>
#include <thread>

namespace accuracy
{
namespace
{

/** FNV-1a: experiments don't share their inputs, and one more of them changes no other's. */
std::uint64_t seed_of(const Experiment &experiment)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char c : std::string(experiment.function) + experiment.inputs) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    }
    return hash;
}

void run(const Experiment &experiment, Case &one)
{
    do {
        one.errors = {};
    } while (!experiment.run(one));
}

/** Every `step`-th input. */
Measurement measure_part(const Experiment &experiment, std::uint64_t first, std::uint64_t step,
                         std::uint64_t inputs)
{
    const std::uint64_t seed = seed_of(experiment);
    Measurement worst(experiment.results.size());
    for (std::uint64_t input = first; input < inputs; input += step) {
        Case one(seed, input);
        run(experiment, one);
        for (std::size_t i = 0; i < worst.size(); ++i) {
            if (one.errors[i] > worst[i].ulps) {
                worst[i] = {one.errors[i], input};
            }
        }
    }
    return worst;
}

} // namespace

Experiments all_experiments()
{
    Experiments all;
    for (const auto &topic : {foundations, matrices, inverses, orientation, decomposition,
                              quaternions, spatial, polar}) {
        const Experiments some = topic();
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

Measurement measure(const Experiment &experiment, std::uint64_t inputs)
{
    const unsigned threads = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::future<Measurement>> parts;
    for (unsigned i = 0; i < threads; ++i) {
        parts.push_back(
            std::async(std::launch::async, measure_part, experiment, i, threads, inputs));
    }
    Measurement worst(experiment.results.size());
    for (std::future<Measurement> &part : parts) {
        const Measurement found = part.get();
        for (std::size_t i = 0; i < worst.size(); ++i) {
            // Of equal errors the first input, however many threads there were.
            if (found[i].ulps > worst[i].ulps ||
                (found[i].ulps == worst[i].ulps && found[i].input < worst[i].input)) {
                worst[i] = found[i];
            }
        }
    }
    return worst;
}

Case replayed(const Experiment &experiment, std::uint64_t input)
{
    Case one(seed_of(experiment), input, true);
    run(experiment, one);
    return one;
}

} // namespace accuracy
