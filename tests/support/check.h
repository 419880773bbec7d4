/* What tests share: comparison by bits, records with guards around them, and random ones. */
#ifndef KX_TESTS_CHECK_H
#define KX_TESTS_CHECK_H

#include "digest.h"

#include "kxmaths5.h"

#include <doctest/doctest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

/** A label is text; doctest prints the address of a const char *. */
template <>
struct doctest::StringMaker<const char *> {
    static String convert(const char *text)
    {
        return text;
    }
};

namespace test
{

constexpr float tolerance = 9.999999974752427e-07f;
constexpr float below_tolerance = 9.999998837884049e-07f;
constexpr float above_tolerance = 1.0000001111620804e-06f;
constexpr float quarter_turn = 1.5707964f, half_turn = 3.1415927f;
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

constexpr KXM4 unit4 = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
constexpr KXM3 unit3 = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/** Fills what a function must not write. As a float it is an ordinary, odd number. */
constexpr std::uint32_t marker = 0x4b3c2d1eU;

template <typename Record>
using Words = std::array<std::uint32_t, sizeof(Record) / 4>;

inline std::string show(std::uint32_t word)
{
    char text[48];
    std::snprintf(text, sizeof text, "%.9g (0x%08x)", static_cast<double>(bits_as<float>(word)),
                  static_cast<unsigned>(word));
    return text;
}

/** Every float of a record, or an array of records, by its bits. */
template <typename Record>
void check_same(const std::string &label, const Record &wanted, const Record &got)
{
    const auto w = bits_as<Words<Record>>(wanted);
    const auto g = bits_as<Words<Record>>(got);
    for (std::size_t i = 0; i < w.size(); ++i) {
        CHECK_MESSAGE(w[i] == g[i], label, ", float ", i, ": wanted ", show(w[i]), ", got ",
                      show(g[i]));
    }
}

/** Every float of two arrays of records; the first record that differs is shown. */
template <typename Record>
void check_same(const std::string &label, const std::vector<Record> &wanted,
                const std::vector<Record> &got)
{
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (std::memcmp(&wanted[i], &got[i], sizeof(Record)) != 0) {
            return check_same(label + ", record " + std::to_string(i), wanted[i], got[i]);
        }
    }
    CHECK(wanted.size() == got.size());
}

inline std::string show(double number)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.17g (%a)", number, number);
    return text;
}

/** An unrounded result, by its bits. */
inline void check_same(const std::string &label, double wanted, double got)
{
    CHECK_MESSAGE(bits_as<std::uint64_t>(wanted) == bits_as<std::uint64_t>(got), label, ": wanted ",
                  show(wanted), ", got ", show(got));
}

/** A result in which a maths function takes part, which may be off in the last bit of a double. */
inline void check_near(const std::string &label, double wanted, double got)
{
    const double allowed = (wanted < 0 ? -wanted : wanted) * 4e-16;
    CHECK_MESSAGE((got >= wanted - allowed && got <= wanted + allowed), label, ": wanted ",
                  show(wanted), ", got ", show(got));
}

template <typename Record>
Record marked()
{
    Words<Record> words;
    words.fill(marker);
    return bits_as<Record>(words);
}

/** A record full of markers, between two guards that nothing may touch. */
template <typename Record>
struct Guarded {
    std::array<std::uint32_t, 4> before = {marker, marker, marker, marker};
    Record record = marked<Record>();
    std::array<std::uint32_t, 4> after = before;

    void check(const std::string &label, const Record &wanted) const
    {
        check_same(label, wanted, record);
        const bool intact = before == Guarded().before && after == before;
        CHECK_MESSAGE(intact, label, ": something outside the record was written");
    }
};

/**
 * What array functions are tried with: every remainder of a block of any size, with no block before
 * it and with many; and counts of more than 16 and 20 bits that end within a block. The last makes
 * arrays that no second cache holds.
 */
inline std::vector<std::uint32_t> array_counts()
{
    std::vector<std::uint32_t> counts(85);
    std::iota(counts.begin(), counts.end(), 0U);
    counts.insert(counts.end(), {0x10001, 0x1000b, 0x100003});
    return counts;
}

/** A deterministic xorshift generator. */
class Random
{
public:
    /** A single from -range to range. */
    float operator()(float range)
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        const auto top = static_cast<std::int32_t>(state >> 32);
        return static_cast<float>(top) * (range / 2147483648.0f);
    }

    template <typename Record>
    Record record(float range)
    {
        std::array<float, sizeof(Record) / 4> floats;
        for (float &f : floats) {
            f = (*this)(range);
        }
        return bits_as<Record>(floats);
    }

private:
    std::uint64_t state = 0x9e3779b97f4a7c15U;
};

} // namespace test

#endif
