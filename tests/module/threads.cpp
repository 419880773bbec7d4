/*
 * Every function from several threads at once, on inputs that the threads share, with outputs of
 * each thread's own: all get what one thread alone gets, and ThreadSanitizer finds no write to what
 * they share. Without it a race spoils a result too seldom for this to be a test.
 */
#include "support/catalogue.h"
#include "support/inputs.h"

#include <doctest/doctest.h>

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using test::Digest;
using test::Inputs;

namespace
{

/** Of points in an array: blocks of every kernel, and some left over. */
constexpr std::uint32_t points = 21;

/** One argument: a word by value, or an array of records. */
using Words = std::vector<std::uint32_t>;

/** Makes the arguments of one function's calls. A triangle's vertices come with it, and behind it.
 */
struct Source {
    Inputs inputs;
    std::uint32_t word_limit;
    KXP3 vertices[4];

    template <typename Argument>
    Words argument(char letter)
    {
        if constexpr (std::is_same_v<Argument, float>) {
            return {inputs.number_bits()};
        } else if constexpr (std::is_same_v<Argument, std::uint32_t>) {
            return {letter == '#'     ? points
                    : word_limit == 0 ? inputs.word()
                                      : inputs.below(word_limit)};
        } else {
            std::array<std::remove_const_t<std::remove_pointer_t<Argument>>, points> records;
            for (auto &record : records) {
                fill(&record);
            }
            Words words(sizeof records / 4);
            std::memcpy(words.data(), letter < 'a' ? static_cast<void *>(vertices) : records.data(),
                        letter < 'a' ? sizeof vertices : sizeof records);
            return words;
        }
    }

    template <typename Record>
    void fill(Record *record)
    {
        inputs.fill(record);
    }
    void fill(KXTriangle *triangle)
    {
        inputs.fill(vertices, triangle);
    }
};

/** What is passed: the value, the shared records themselves, or `own`, a copy to be written. */
template <typename Argument>
Argument passed(const Words &shared, Words &own)
{
    if constexpr (!std::is_pointer_v<Argument>) {
        Argument value;
        std::memcpy(&value, shared.data(), sizeof value);
        return value;
    } else if constexpr (std::is_const_v<std::remove_pointer_t<Argument>>) {
        return reinterpret_cast<Argument>(shared.data());
    } else {
        own = shared;
        return reinterpret_cast<Argument>(own.data());
    }
}

/** One call, which any thread may make at any time. It gives a digest of the result and outputs. */
struct Call {
    std::string name;
    std::function<std::uint64_t()> make;
};

template <typename Result, typename... Arguments, std::size_t... Place>
Call call_of(const catalogue::Entry<Result (*)(Arguments...)> &entry, const std::string &seed,
             std::index_sequence<Place...>)
{
    Source source = {Inputs(seed.c_str()), entry.word_limit, {}};
    source.inputs.next_kind();
    // The braces keep the order of the arguments.
    const std::array<Words, sizeof...(Arguments)> shared{
        source.argument<Arguments>(entry.sharings[Place])...};
    return {entry.name, [shared, function = entry.function] {
                std::array<Words, sizeof...(Arguments)> own;
                Digest digest;
                if constexpr (std::is_void_v<Result>) {
                    function(passed<Arguments>(shared[Place], own[Place])...);
                } else {
                    digest.result(function(passed<Arguments>(shared[Place], own[Place])...));
                }
                for (const Words &words : own) {
                    for (const std::uint32_t word : words) {
                        digest.computed(word);
                    }
                }
                return digest.value();
            }};
}

template <typename Result, typename... Arguments>
Call call_of(const catalogue::Entry<Result (*)(Arguments...)> &entry, int number)
{
    return call_of(entry, entry.name + std::to_string(number),
                   std::index_sequence_for<Arguments...>());
}

std::vector<std::uint64_t> made(const std::vector<Call> &calls)
{
    std::vector<std::uint64_t> digests;
    for (const Call &call : calls) {
        digests.push_back(call.make());
    }
    return digests;
}

} // namespace

TEST_CASE("Any function may run on any thread")
{
    // The functions take turns, so that each is among all the others, and each thread soon comes to
    // what another has just called: ThreadSanitizer remembers only so much.
    std::vector<Call> calls;
    for (int i = 0; i < 200; ++i) {
        catalogue::for_every_function(
            [&](const auto &entry) { calls.push_back(call_of(entry, i)); });
    }

    // The threads come first: what a first call might prepare is not yet there.
    std::array<std::vector<std::uint64_t>, 4> together;
    std::array<std::thread, together.size()> threads;
    std::atomic<std::size_t> started{0};
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i] = std::thread([&, i] {
            for (++started; started < threads.size();) {
                std::this_thread::yield();
            }
            together[i] = made(calls);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const std::vector<std::uint64_t> alone = made(calls);
    for (const auto &digests : together) {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            CHECK_MESSAGE(digests[i] == alone[i], calls[i].name,
                          ": another result among threads than alone");
        }
    }
}
