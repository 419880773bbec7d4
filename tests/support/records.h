/*
 * The records of one call, at addresses that only a float's alignment ties, filled from a source:
 * `word`, `below`, `fill` of any record, and `fill` of vertices with their triangle.
 */
#ifndef KX_TESTS_RECORDS_H
#define KX_TESTS_RECORDS_H

#include "catalogue.h"

#include <array>
#include <cstddef>
#include <iterator>

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

/** Makes the arguments of calls: a maker of `catalogue::argument`. */
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

} // namespace test

#endif
