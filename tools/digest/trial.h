/* Calls a function with generated inputs, in every permitted sharing of its records, and digests
 * it. */
#ifndef KX_DIGEST_TRIAL_H
#define KX_DIGEST_TRIAL_H

#include "support/catalogue.h"
#include "support/environment.h"
#include "support/inputs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace test
{

/**
 * One function's trial. Everything enters the digest: results, outputs, inputs, and the words
 * around them, so that a store in the wrong place shows as well. It makes the arguments itself.
 */
class Trial
{
public:
    Trial(const char *name, const Environment &around) : inputs(name), environment(around) {}

    template <typename Result, typename... Arguments>
    std::uint64_t run(const catalogue::Entry<Result (*)(Arguments...)> &entry)
    {
        word_limit = entry.word_limit;
        for (const char *sharing = entry.sharings; sharing != nullptr;
             sharing = catalogue::next_sharing(sharing)) {
            const bool shared = sharing != entry.sharings;
            for (int i = 0; i < 3000; ++i) {
                if (shared && entry.shared_shows_roundings) {
                    inputs.use(Kind::ordinary);
                } else {
                    inputs.next_kind();
                }
                call(entry, sharing);
            }
        }
        moved = entry.has_moved_nans;
        inputs.use(Kind::moved_nans);
        for (int i = 0; moved && i < 1000; ++i) {
            call(entry, entry.sharings);
        }
        return digest.value();
    }

    /** Points through a matrix: every count from 0 to 70, apart and in place. */
    template <typename Matrix, typename Point>
    std::uint64_t run(const catalogue::Entry<void (*)(const Matrix *, std::uint32_t, const Point *,
                                                      Point *)> &entry)
    {
        for_every_count([&](std::uint32_t count) {
            Matrix m;
            inputs.fill(&m);
            Words in = array<Point>(count), out = array<Point>(count);
            in_environment(entry.function, &m, count, inside<Point>(in), inside<Point>(out));
            enter(in);
            enter(out);
            in_environment(entry.function, &m, count, inside<Point>(in), inside<Point>(in));
            enter(in);
        });
        return digest.value();
    }

    /** Points in place from unit to unit, with the same counts. */
    template <typename Point>
    std::uint64_t
    run(const catalogue::Entry<void (*)(KXUnit, KXUnit, std::uint32_t, Point *)> &entry)
    {
        for_every_count([&](std::uint32_t count) {
            Words points = array<Point>(count);
            const KXUnit from = inputs.below(10), to = inputs.below(10);
            in_environment(entry.function, from, to, count, inside<Point>(points));
            enter(points);
        });
        return digest.value();
    }

    /** A line or a ray against a triangle of four vertices. */
    template <typename Path>
    std::uint64_t run(const catalogue::Entry<std::int32_t (*)(const Path *, const KXTriangle *,
                                                              const KXP3 *, KXP3 *)> &entry)
    {
        for (int i = 0; i < 20000; ++i) {
            inputs.next_kind();
            Path path;
            KXP3 vertices[4];
            KXTriangle triangle;
            inputs.fill(&path);
            inputs.fill(vertices, &triangle);
            Words point;
            renew(point);
            digest.result(
                in_environment(entry.function, &path, &triangle, vertices, inside<KXP3>(point)));
            enter(point);
        }
        return digest.value();
    }

    float number()
    {
        return inputs.number();
    }

    std::uint32_t word()
    {
        return word_limit == 0 ? inputs.word() : inputs.below(word_limit);
    }

    /** Functions of arrays have a `run` of their own. */
    std::uint32_t count(bool)
    {
        std::abort();
    }

    template <typename Pointee>
    Pointee *record(std::size_t index, bool)
    {
        using Record = std::remove_const_t<Pointee>;
        Record *const place = inside<Record>(frames.at(index));
        if (!is_filled[index]) {
            Record record;
            static_assert(sizeof record <= largest * 4, "the largest record has room");
            inputs.fill(&record);
            std::memcpy(place, &record, sizeof record);
            is_filled[index] = true;
        }
        return place;
    }

private:
    /** A record's or an array's, with four more before and after them. */
    using Words = std::vector<std::uint32_t>;

    static constexpr std::size_t largest = 16; /**< Words of the largest record. */

    template <typename Record>
    static Record *inside(Words &words)
    {
        return reinterpret_cast<Record *>(words.data() + 4);
    }

    template <typename Result, typename... Parameters, typename... Arguments>
    Result in_environment(Result (*function)(Parameters...), Arguments... arguments)
    {
        environment.enter();
        if constexpr (std::is_void_v<Result>) {
            function(arguments...);
            environment.leave();
        } else {
            const Result result = function(arguments...);
            environment.leave();
            return result;
        }
    }

    /** Room for any record; what is around it can't be mistaken for a NaN. */
    void renew(Words &frame)
    {
        frame.resize(largest + 8);
        const auto around = [this] { return inputs.word() & 0x7f7fffffU; };
        std::generate_n(frame.begin(), 4, around);
        std::generate_n(frame.end() - 4, 4, around);
        std::generate_n(frame.begin() + 4, largest, [this] { return inputs.number_bits(); });
    }

    template <typename Point>
    Words array(std::uint32_t count)
    {
        Words words(8 + count * (sizeof(Point) / 4));
        std::generate(words.begin(), words.end(), [this] { return inputs.number_bits(); });
        return words;
    }

    template <typename ForCount>
    void for_every_count(ForCount call_with)
    {
        for (int round = 0; round < 8; ++round) {
            for (std::uint32_t count = 0; count <= 70; ++count) {
                inputs.next_kind();
                call_with(count);
            }
        }
    }

    template <typename Result, typename... Arguments>
    void call(const catalogue::Entry<Result (*)(Arguments...)> &entry, const char *sharing)
    {
        for (Words &frame : frames) {
            renew(frame);
        }
        is_filled = {};
        const auto arguments = catalogue::arguments(entry, sharing, *this);
        const auto make = [&](Arguments... a) { return in_environment(entry.function, a...); };
        if constexpr (std::is_void_v<Result>) {
            std::apply(make, arguments);
        } else {
            digest.result(std::apply(make, arguments));
        }
        for (std::size_t i = 0; i < frames.size(); ++i) {
            if (is_filled[i]) {
                enter(frames[i]);
            }
        }
    }

    void enter(const Words &words)
    {
        for (const std::uint32_t bits : words) {
            moved ? digest.word(bits) : digest.computed(bits);
        }
    }

    Inputs inputs;
    Environment environment;
    Digest digest;
    std::array<Words, 5> frames;
    std::array<bool, 5> is_filled;
    std::uint32_t word_limit = 0;
    bool moved = false;
};

} // namespace test

#endif
