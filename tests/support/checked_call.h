/*
 * One call of any function of the catalogue, and what holds after it whatever went in: nothing is
 * written but outputs, and of these only what the contract lets be written; verdicts and statuses
 * are 0 or 1; what is promised to stay untouched is; the floating-point environment is as before.
 *
 * The inputs come from a source: `word`, `below`, `fill` of any record, and `fill` of vertices with
 * their triangle.
 */
#ifndef KX_TESTS_CHECKED_CALL_H
#define KX_TESTS_CHECKED_CALL_H

#include "catalogue.h"
#include "digest.h"
#include "environment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <type_traits>
#include <utility>

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

namespace promises
{

template <typename Record>
bool same(const Record &a, const Record &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool is_inverted(const KXBox &box)
{
    return box.minimum.x > box.maximum.x || box.minimum.y > box.maximum.y ||
           box.minimum.z > box.maximum.z;
}

/** Clearly so, in any rounding mode. */
inline bool is_short(const KXV3 &v)
{
    const double x = v.x, y = v.y, z = v.z;
    return std::sqrt(x * x + y * y + z * z) < 0.999e-6;
}

/**
 * What a contract promises of one function beyond what its entry says. `was` has the arguments as
 * they were, with the records as they were; `is` the same as they are after the call.
 */
template <typename Function, typename Arguments, typename Result>
bool are_kept(Function, const Arguments &, const Arguments &, Result)
{
    return true;
}

using Normalise = std::tuple<const KXV3 *, KXV3 *>;
inline bool are_kept(double (*)(const KXV3 *, KXV3 *), const Normalise &was, const Normalise &is,
                     double length)
{
    return length > static_cast<double>(KX_TOLERANCE) || std::isnan(length) ||
           same(*std::get<0>(was), *std::get<1>(is));
}

using Scale = std::tuple<KXV3 *, float>;
inline bool are_kept(void (*)(KXV3 *, float), const Scale &was, const Scale &is, int)
{
    return !is_short(*std::get<0>(was)) || same(*std::get<0>(was), *std::get<0>(is));
}

/** The affine method leaves the output untouched when it refuses. */
using Inverse = std::tuple<const KXM4 *, KXM4 *>;
inline bool are_kept(std::int32_t (*)(const KXM4 *, KXM4 *), const Inverse &was, const Inverse &is,
                     std::int32_t status)
{
    const auto &row = std::get<0>(was)->m[3];
    const bool affine = row[0] == 0 && row[1] == 0 && row[2] == 0 && row[3] == 1;
    return status == 0 || !affine || same(*std::get<1>(was), *std::get<1>(is));
}

inline bool has_unit_row(const KXM4 *m)
{
    return m == nullptr ||
           (m->m[3][0] == 0 && m->m[3][1] == 0 && m->m[3][2] == 0 && m->m[3][3] == 1);
}

/** Finite whatever the angles; with no such order the block stays as it was. */
inline bool is_oriented(const KXM4 *was, const KXM4 *is, KXRotationOrder order)
{
    for (int r = 0; is != nullptr && r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (order > KX_ORDER_ZYX ? bits_of(was->m[r][c]) != bits_of(is->m[r][c])
                                     : !std::isfinite(is->m[r][c])) {
                return false;
            }
        }
    }
    return has_unit_row(is);
}

using Orientation = std::tuple<KXM4 *, KXM4 *, float, float, float, KXRotationOrder>;
inline bool are_kept(void (*)(KXM4 *, KXM4 *, float, float, float, KXRotationOrder),
                     const Orientation &was, const Orientation &is, int)
{
    return is_oriented(std::get<0>(was), std::get<0>(is), std::get<5>(is)) &&
           is_oriented(std::get<1>(was), std::get<1>(is), std::get<5>(is));
}

using Position = std::tuple<KXM4 *, KXM4 *, const KXPosition *, KXRotationOrder>;
inline bool are_kept(void (*)(KXM4 *, KXM4 *, const KXPosition *, KXRotationOrder),
                     const Position &was, const Position &is, int)
{
    return is_oriented(std::get<0>(was), std::get<0>(is), std::get<3>(is)) &&
           is_oriented(std::get<1>(was), std::get<1>(is), std::get<3>(is));
}

using TransformBox = std::tuple<const KXBox *, const KXM4 *, KXBox *>;
inline bool are_kept(void (*)(const KXBox *, const KXM4 *, KXBox *), const TransformBox &was,
                     const TransformBox &is, int)
{
    return !is_inverted(*std::get<0>(was)) || same(*std::get<0>(was), *std::get<2>(is));
}

/** Without a contact the point is the start, or untouched. */
using LineBox = std::tuple<const KXLine *, const KXBox *, KXP3 *>;
inline bool are_kept(std::int32_t (*)(const KXLine *, const KXBox *, KXP3 *), const LineBox &was,
                     const LineBox &is, std::int32_t verdict)
{
    const bool inverted = is_inverted(*std::get<1>(was));
    if (std::get<2>(is) == nullptr || verdict == 1) {
        return !inverted || verdict == 0;
    }
    return same(*std::get<2>(was), *std::get<2>(is)) ||
           (!inverted && same(std::get<0>(was)->start, *std::get<2>(is)));
}

using RayBox = std::tuple<const KXRay *, const KXBox *, KXP3 *>;
inline bool are_kept(std::int32_t (*)(const KXRay *, const KXBox *, KXP3 *), const RayBox &was,
                     const RayBox &is, std::int32_t verdict)
{
    const bool inverted = is_inverted(*std::get<1>(was));
    if (std::get<2>(is) == nullptr || verdict == 1) {
        return !inverted || verdict == 0;
    }
    return same(inverted ? *std::get<2>(was) : std::get<0>(was)->origin, *std::get<2>(is));
}

/** Along a plane: never a hit, and the point untouched. The margin is for what is rounded. */
inline bool runs_along(const KXPlane &plane, const KXV3 &step)
{
    const double x = static_cast<double>(plane.a) * static_cast<double>(step.x);
    const double y = static_cast<double>(plane.b) * static_cast<double>(step.y);
    const double z = static_cast<double>(plane.c) * static_cast<double>(step.z);
    return std::fabs(x) + std::fabs(y) + std::fabs(z) < 0.999e-6;
}

using LineTriangle = std::tuple<const KXLine *, const KXTriangle *, const KXP3 *, KXP3 *>;
inline bool are_kept(std::int32_t (*)(const KXLine *, const KXTriangle *, const KXP3 *, KXP3 *),
                     const LineTriangle &was, const LineTriangle &is, std::int32_t verdict)
{
    const KXLine &line = *std::get<0>(was);
    const KXV3 step = {line.end.x - line.start.x, line.end.y - line.start.y,
                       line.end.z - line.start.z};
    return !runs_along(std::get<1>(was)->plane, step) ||
           (verdict == 0 && same(*std::get<3>(was), *std::get<3>(is)));
}

using RayTriangle = std::tuple<const KXRay *, const KXTriangle *, const KXP3 *, KXP3 *>;
inline bool are_kept(std::int32_t (*)(const KXRay *, const KXTriangle *, const KXP3 *, KXP3 *),
                     const RayTriangle &was, const RayTriangle &is, std::int32_t verdict)
{
    return !runs_along(std::get<1>(was)->plane, std::get<0>(was)->direction) ||
           (verdict == 0 && same(*std::get<3>(was), *std::get<3>(is)));
}

using PlaneEquation = std::tuple<const KXP3 *, const KXP3 *, const KXP3 *, KXPlane *>;
inline bool are_kept(std::int32_t (*)(const KXP3 *, const KXP3 *, const KXP3 *, KXPlane *),
                     const PlaneEquation &was, const PlaneEquation &is, std::int32_t status)
{
    const KXPlane instead = {1, 0, 0, -std::get<1>(was)->x};
    return status == 0 || same(instead, *std::get<3>(is));
}

} // namespace promises

template <typename Source>
class CheckedCall
{
public:
    explicit CheckedCall(Source &inputs) : source(inputs) {}

    /** Fills the records, at addresses that only a float's alignment ties, and makes the call. */
    template <typename Result, typename... Arguments>
    const char *operator()(const catalogue::Entry<Result (*)(Arguments...)> &entry,
                           const char *sharing, test::Environment &environment)
    {
        return call(entry, sharing, environment, std::index_sequence_for<Arguments...>());
    }

private:
    static constexpr std::size_t guard = 4, most_points = 70, most_words = most_points * 4;

    /** The words of an argument's records, with a guard before and behind. */
    struct Area {
        bool used = false;
        std::size_t start = 0, count = 0, record_words = 0;
        std::uint32_t may_write = 0;
        alignas(16) std::array<std::uint32_t, guard + 3 + most_words + guard> is, was;

        std::size_t end() const
        {
            return start + count * record_words;
        }
        bool may_have_changed(std::size_t at) const
        {
            return at >= start && at < end() &&
                   (may_write >> ((at - start) % record_words) & 1) != 0;
        }
        void forbid_guards()
        {
            ASAN_POISON_MEMORY_REGION(is.data(), start * 4);
            ASAN_POISON_MEMORY_REGION(is.data() + end(), guard * 4);
        }
        void permit_guards()
        {
            ASAN_UNPOISON_MEMORY_REGION(is.data(), is.size() * 4);
        }
    };

    template <typename Result, typename... Arguments, std::size_t... Place>
    const char *call(const catalogue::Entry<Result (*)(Arguments...)> &entry, const char *sharing,
                     test::Environment &environment, std::index_sequence<Place...>)
    {
        for (Area &area : areas) {
            area.used = false;
        }
        count = 1;
        // The braces keep the order of the arguments.
        const std::tuple<Arguments...> is{argument<Arguments>(entry, sharing[Place])...};
        const std::tuple<Arguments...> was{as_before(std::get<Place>(is))...};
        for_used([](Area &area) { area.forbid_guards(); });
        std::conditional_t<std::is_void_v<Result>, int, Result> result = 0;
        environment.enter();
        if constexpr (std::is_void_v<Result>) {
            std::apply(entry.function, is);
        } else {
            result = std::apply(entry.function, is);
        }
        const bool environment_kept = environment.leave();
        for_used([](Area &area) { area.permit_guards(); });

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
        // With flushing, what a test compares here is not what the function compared.
        return environment.flushes() || promises::are_kept(entry.function, was, is, result)
                   ? nullptr
                   : "breaks its contract's promise";
    }

    /** Whether only what the call may write has changed. */
    bool is_left_alone(bool nothing_written)
    {
        bool is = true;
        for_used([&](Area &area) {
            for (std::size_t i = 0; i < area.end() + guard; ++i) {
                is = is &&
                     (area.is[i] == area.was[i] || (!nothing_written && area.may_have_changed(i)));
            }
        });
        return is;
    }

    template <typename Argument, typename Function>
    Argument argument(const catalogue::Entry<Function> &entry, char letter)
    {
        if constexpr (std::is_same_v<Argument, float>) {
            float value;
            source.fill(&value);
            return value;
        } else if constexpr (std::is_same_v<Argument, std::uint32_t>) {
            if (letter == '#' || letter == '0') {
                count = letter == '#' ? source.below(most_points + 1) : 0;
                return static_cast<std::uint32_t>(count);
            }
            return entry.word_limit == 0 ? source.word() : source.below(entry.word_limit);
        } else {
            if (letter == '-') {
                return nullptr;
            }
            using Pointee = std::remove_pointer_t<Argument>;
            using Record = std::remove_const_t<Pointee>;
            // The matrix of an array of points is one, and stands before the count.
            Area &area = areas.at(static_cast<std::size_t>((letter | 0x20) - 'a'));
            if (!area.used) {
                lay_out(area, sizeof(Record) / 4, letter < 'a' ? std::size(vertices) : count);
                fill<Record>(area, letter < 'a');
                area.was = area.is;
            }
            if (!std::is_const_v<Pointee>) {
                area.may_write = entry.written;
            }
            return reinterpret_cast<Argument>(area.is.data() + area.start);
        }
    }

    void lay_out(Area &area, std::size_t record_words, std::size_t records)
    {
        area.used = true;
        area.start = guard + source.below(4);
        area.count = records;
        area.record_words = record_words;
        area.may_write = 0;
        area.is.fill(0x4b3c2d1eU);
    }

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
            std::memcpy(area.is.data() + area.start + i * area.record_words, &record,
                        sizeof record);
        }
    }

    /** An argument with the address of the record's copy from before the call. */
    template <typename Argument>
    Argument as_before(Argument argument)
    {
        if constexpr (std::is_pointer_v<Argument>) {
            for (Area &area : areas) {
                const auto *const address = reinterpret_cast<const std::uint32_t *>(argument);
                if (area.used && address == area.is.data() + area.start) {
                    return reinterpret_cast<Argument>(area.was.data() + area.start);
                }
            }
        }
        return argument;
    }

    template <typename Act>
    void for_used(Act act)
    {
        for (Area &area : areas) {
            if (area.used) {
                act(area);
            }
        }
    }

    Source &source;
    std::size_t count = 1;
    KXP3 vertices[4] = {};
    std::array<Area, 5> areas;
};

} // namespace test

#endif
