/*
 * One call of any function of the catalogue, and what holds after it whatever went in: nothing is
 * written but outputs, and of these only what the contract lets be written; verdicts and statuses
 * are 0 or 1; its entry's promise is kept; the floating-point environment is as before.
 */
#ifndef KX_TESTS_CHECKED_CALL_H
#define KX_TESTS_CHECKED_CALL_H

#include "environment.h"
#include "records.h"

#if defined(__has_include)
#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#endif
#endif
#if !defined(ASAN_POISON_MEMORY_REGION)
#define ASAN_POISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#endif

namespace test
{

template <typename Source>
class CheckedCall
{
public:
    explicit CheckedCall(Source &inputs) : records(inputs) {}

    /** What is wrong with the call, or null. */
    template <typename Result, typename... Arguments>
    const char *operator()(const catalogue::Entry<Result (*)(Arguments...)> &entry,
                           const char *sharing, Environment &environment)
    {
        const auto is = records.arguments(entry, sharing);
        for_used([](const Area &area, Area &before) { before = area; });
        const auto was = std::apply(
            [this](auto... a) { return std::make_tuple(moved(a, records.areas, areas_before)...); },
            is);
        for_used([](Area &area, Area &) {
            ASAN_POISON_MEMORY_REGION(area.words.data(), area.start * 4);
            ASAN_POISON_MEMORY_REGION(area.words.data() + area.end(), Area::guard * 4);
        });
        std::conditional_t<std::is_void_v<Result>, int, Result> result = 0;
        environment.enter();
        if constexpr (std::is_void_v<Result>) {
            std::apply(entry.function, is);
        } else {
            result = std::apply(entry.function, is);
        }
        const bool environment_kept = environment.leave();
        for_used([](Area &area, Area &) {
            ASAN_UNPOISON_MEMORY_REGION(area.words.data(), sizeof area.words);
        });

        const bool nothing_written = std::is_same_v<Result, std::int32_t> &&
                                     static_cast<int>(result) == entry.untouched_result;
        if (!is_left_alone(nothing_written)) {
            return "writes what it must leave alone";
        }
        if (std::is_same_v<Result, std::int32_t> && result != 0 && result != 1) {
            return "gives a verdict or status that is neither 0 nor 1";
        }
        if (std::is_same_v<Result, std::uint32_t> && result > 32) {
            return "gives a bit's index beyond 32";
        }
        if (!environment_kept) {
            return "changes the floating-point environment";
        }
        // With flushing, what a promise compares here is not what the function compared.
        return environment.flushes() || entry.promise(was, is, result)
                   ? nullptr
                   : "breaks its contract's promise";
    }

private:
    /** Whether only what the call may write has changed. */
    bool is_left_alone(bool nothing_written)
    {
        bool is = true;
        for_used([&](const Area &area, const Area &before) {
            for (std::size_t i = 0; i < area.end() + Area::guard; ++i) {
                const bool written = !nothing_written && i >= area.start && i < area.end() &&
                                     (area.may_write >> (i - area.start) % area.record_words & 1);
                is = is && (written || area.words[i] == before.words[i]);
            }
        });
        return is;
    }

    template <typename Act>
    void for_used(Act act)
    {
        for (std::size_t i = 0; i < areas_before.size(); ++i) {
            if (records.areas[i].used) {
                act(records.areas[i], areas_before[i]);
            }
        }
    }

    Records<Source> records;
    Areas areas_before;
};

} // namespace test

#endif
