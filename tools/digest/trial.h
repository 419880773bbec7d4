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
            Array<Point> in = array<Point>(count), out = array<Point>(count);
            in_environment(entry.function, &m, count, in.points(), out.points());
            enter(in);
            enter(out);
            in_environment(entry.function, &m, count, in.points(), in.points());
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
            Array<Point> points = array<Point>(count);
            const KXUnit from = inputs.below(10), to = inputs.below(10);
            in_environment(entry.function, from, to, count, points.points());
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
            Frame point = frame();
            digest.result(in_environment(entry.function, &path, &triangle, vertices,
                                         reinterpret_cast<KXP3 *>(point.record.data())));
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
        Frame &f = frames.at(index);
        if (!f.filled) {
            std::remove_const_t<Pointee> record;
            static_assert(sizeof record <= sizeof f.record, "the largest record has room");
            inputs.fill(&record);
            std::memcpy(f.record.data(), &record, sizeof record);
            f.filled = true;
        }
        return reinterpret_cast<Pointee *>(f.record.data());
    }

private:
    /** Room for the largest record, with words around it. */
    struct Frame {
        std::array<std::uint32_t, 4> before;
        std::array<std::uint32_t, 16> record;
        std::array<std::uint32_t, 4> after;
        bool filled;
    };

    /** An array with four words before and after it. */
    template <typename Point>
    struct Array {
        std::vector<std::uint32_t> words;

        Point *points()
        {
            return reinterpret_cast<Point *>(words.data() + 4);
        }
    };

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

    Frame frame()
    {
        Frame f = {};
        for (auto *part : {f.before.data(), f.after.data()}) {
            std::generate_n(part, 4, [this] { return inputs.word() & 0x7f7fffffU; });
        }
        std::generate(f.record.begin(), f.record.end(), [this] { return inputs.number_bits(); });
        return f;
    }

    template <typename Point>
    Array<Point> array(std::uint32_t count)
    {
        Array<Point> a;
        a.words.resize(8 + count * (sizeof(Point) / 4));
        std::generate(a.words.begin(), a.words.end(), [this] { return inputs.number_bits(); });
        return a;
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
        for (Frame &f : frames) {
            f = frame();
        }
        const auto arguments = catalogue::arguments(entry, sharing, *this);
        const auto make = [&](Arguments... a) { return in_environment(entry.function, a...); };
        if constexpr (std::is_void_v<Result>) {
            std::apply(make, arguments);
        } else {
            digest.result(std::apply(make, arguments));
        }
        for (const Frame &f : frames) {
            if (f.filled) {
                enter(f);
            }
        }
    }

    void enter(std::uint32_t bits)
    {
        if (moved) {
            digest.word(bits);
        } else {
            digest.computed(bits);
        }
    }

    void enter(const Frame &f)
    {
        for (const std::uint32_t bits : f.before) {
            enter(bits);
        }
        for (const std::uint32_t bits : f.record) {
            enter(bits);
        }
        for (const std::uint32_t bits : f.after) {
            enter(bits);
        }
    }

    template <typename Point>
    void enter(const Array<Point> &a)
    {
        for (const std::uint32_t bits : a.words) {
            enter(bits);
        }
    }

    Inputs inputs;
    Environment environment;
    Digest digest;
    std::array<Frame, 5> frames = {};
    std::uint32_t word_limit = 0;
    bool moved = false;
};

} // namespace test

#endif
