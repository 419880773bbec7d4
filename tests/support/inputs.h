/* Inputs without end, the same on every machine: ordinary, at boundaries and degenerate. */
#ifndef KX_TESTS_INPUTS_H
#define KX_TESTS_INPUTS_H

#include "digest.h"

#include "kxmaths5.h"

#include <cstddef>

namespace test
{

/** What the floats of one call are like. */
enum class Kind {
    lattice,   /**< Multiples of a quarter: many ties, zeros and hits on an edge. */
    ordinary,  /**< Full precision, up to 8. */
    boundary,  /**< Constants of the library, and their neighbours. */
    any_bits,  /**< Any number, subnormal or infinite, but no NaN. */
    moved_nans /**< NaNs of any payload among multiples of a quarter: for floats that only move. */
};

class Inputs
{
public:
    /** Each function has numbers of its own, so that another function more changes no digest. */
    explicit Inputs(const char *function);

    std::uint32_t word();
    std::uint32_t below(std::uint32_t limit);

    /** Chooses what the next call's floats are like; NaNs are never chosen. */
    void next_kind();
    void use(Kind chosen);

    /** As bits, since 32-bit x86 gives a float back in a register that makes a NaN quiet. */
    std::uint32_t number_bits();
    float number();

    void fill(KXM3 *m);
    void fill(KXM4 *m);
    void fill(KXBox *box);

    /** Any other record of floats. */
    template <typename Plain>
    void fill(Plain *record)
    {
        static_assert(sizeof(Plain) % sizeof(float) == 0, "a record of floats");
        for (std::size_t i = 0; i < sizeof(Plain) / sizeof(float); ++i) {
            const std::uint32_t value = number_bits();
            std::memcpy(reinterpret_cast<char *>(record) + i * sizeof value, &value, sizeof value);
        }
    }

    /** Four vertices, and a triangle of three of them, mostly with their plane. */
    void fill(KXP3 (&vertices)[4], KXTriangle *triangle);

private:
    void make_rotation(KXM4 *m);
    template <std::size_t Size>
    void make_near_unit(float (&m)[Size][Size]);
    template <std::size_t Size>
    void make_singular(float (&m)[Size][Size]);

    std::uint64_t state;
    Kind kind = Kind::ordinary;
};

} // namespace test

#endif
