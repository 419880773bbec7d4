/* Calls of any function of the catalogue: their records, and what holds after them. */
#ifndef KX_TESTS_CALLS_H
#define KX_TESTS_CALLS_H

#include "catalogue.h"
#include "environment.h"

#include <array>
#include <cstddef>
#include <iterator>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#endif
#if !defined(ASAN_POISON_MEMORY_REGION)
#define ASAN_POISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) ((void)(address), (void)(size))
#endif

namespace test
{

/** Words of the records of an argument, with a guard before and after them. */
struct Area {
    static constexpr std::size_t guard = 4, most_points = 70;

    bool used = false;
    std::size_t start = 0, count = 0, record_words = 0;
    std::uint32_t may_write = 0;
    alignas(16) std::array<std::uint32_t, guard + 3 + most_points * 4 + guard> words;

    std::size_t end() const
    {
        return start + count * record_words;
    }
};

/** An area for each letter of a sharing. */
using Areas = std::array<Area, 5>;

/** An argument with the address that its record has in a copy of the areas. */
template <typename Argument>
Argument moved(Argument argument, const Areas &from, Areas &to)
{
    if constexpr (std::is_pointer_v<Argument>) {
        for (std::size_t i = 0; i < from.size(); ++i) {
            const auto *const start = from[i].words.data() + from[i].start;
            if (from[i].used && reinterpret_cast<const std::uint32_t *>(argument) == start) {
                return reinterpret_cast<Argument>(to[i].words.data() + to[i].start);
            }
        }
    }
    return argument;
}

/**
 * Makes the arguments of calls, a maker of `catalogue::argument`: records at addresses that only a
 * float's alignment ties, filled from a source, which has `word`, `below`, `fill` of any record,
 * and `fill` of vertices with their triangle.
 */
template <typename Source>
class Records
{
public:
    explicit Records(Source &inputs) : source(inputs) {}

    Areas areas;

    template <typename Function>
    auto arguments(const catalogue::Entry<Function> &entry, const char *sharing)
    {
        for (Area &area : areas) {
            area.used = false;
        }
        points = 1;
        word_limit = entry.word_limit;
        written = entry.written;
        return catalogue::arguments(entry, sharing, *this);
    }

    float number()
    {
        float value;
        source.fill(&value);
        return value;
    }

    std::uint32_t word()
    {
        return word_limit == 0 ? source.word() : source.below(word_limit);
    }

    std::uint32_t count(bool any)
    {
        points = any ? source.below(Area::most_points + 1) : 0;
        return points;
    }

    /** The matrix of an array of points is one, since it comes before the count. */
    template <typename Pointee>
    Pointee *record(std::size_t index, bool is_vertices)
    {
        using Record = std::remove_const_t<Pointee>;
        Area &area = areas.at(index);
        if (!area.used) {
            area.used = true;
            area.start = Area::guard + source.below(4);
            area.count = is_vertices ? std::size(vertices) : points;
            area.record_words = sizeof(Record) / 4;
            area.may_write = 0;
            area.words.fill(0x4b3c2d1eU);
            fill<Record>(area, is_vertices);
        }
        if (!std::is_const_v<Pointee>) {
            area.may_write = written;
        }
        return reinterpret_cast<Pointee *>(area.words.data() + area.start);
    }

private:
    template <typename Record>
    void fill(Area &area, bool with_vertices)
    {
        for (std::size_t i = 0; i < area.count; ++i) {
            Record record;
            if constexpr (std::is_same_v<Record, KXTriangle>) {
                source.fill(vertices, &record);
            } else {
                source.fill(&record);
            }
            if constexpr (std::is_same_v<Record, KXP3>) {
                record = with_vertices ? vertices[i] : record;
            }
            std::memcpy(area.words.data() + area.start + i * area.record_words, &record,
                        sizeof record);
        }
    }

    Source &source;
    std::uint32_t points = 1, word_limit = 0, written = 0;
    KXP3 vertices[4] = {};
};

/**
 * What holds after a call whatever went in: nothing is written but outputs, and of these only what
 * the contract lets be written; verdicts and statuses are 0 or 1; the entry's promise is kept; the
 * floating-point environment is as before.
 */
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
