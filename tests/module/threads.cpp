/*
 * Every function from several threads at once, on inputs that the threads share, with outputs of
 * each thread's own: all get what one thread alone gets, and ThreadSanitizer finds no write to what
 * they share. Without it a race spoils a result too seldom for this to be a test.
 */
#include "support/calls.h"
#include "support/digest.h"
#include "support/inputs.h"

#include <doctest/doctest.h>

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace test;

namespace
{

/** One call, which any thread may make at any time. It gives a digest of the result and outputs. */
struct Call {
    std::string name;
    std::function<std::uint64_t()> make;
};

/** What is passed: the value, the shared record itself, or the thread's own where it is written. */
template <typename Argument>
Argument passed(Argument argument, const Areas &shared, Areas &own)
{
    constexpr bool is_read = std::is_const_v<std::remove_pointer_t<Argument>>;
    return is_read ? argument : moved(argument, shared, own);
}

/** The inputs of one function's call, which the threads share. */
template <typename... Arguments>
struct Shared {
    template <typename Entry>
    Shared(const Entry &entry, const std::string &seed) : inputs(seed.c_str())
    {
        inputs.next_kind();
        arguments = records.arguments(entry, entry.sharings);
    }

    Inputs inputs;
    Records<Inputs> records{inputs};
    std::tuple<Arguments...> arguments;
};

template <typename Result, typename... Arguments>
Call call_of(const catalogue::Entry<Result (*)(Arguments...)> &entry, int number)
{
    const auto shared =
        std::make_shared<Shared<Arguments...>>(entry, entry.name + std::to_string(number));
    return {entry.name, [shared, function = entry.function] {
                Areas own = shared->records.areas;
                const auto call = [&](Arguments... a) {
                    return function(passed(a, shared->records.areas, own)...);
                };
                Digest digest;
                if constexpr (std::is_void_v<Result>) {
                    std::apply(call, shared->arguments);
                } else {
                    digest.result(std::apply(call, shared->arguments));
                }
                for (const Area &area : own) {
                    for (std::size_t i = 0; area.used && i < area.end(); ++i) {
                        digest.computed(area.words[i]);
                    }
                }
                return digest.value();
            }};
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
