/* A 64-bit digest of what a function gave back. Words enter by value, so byte order plays no part.
 */
#ifndef KX_TESTS_DIGEST_H
#define KX_TESTS_DIGEST_H

#include <cstdint>
#include <cstring>

namespace test
{

template <typename To, typename From>
To bits_as(const From &from)
{
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

inline bool is_nan(std::uint32_t bits)
{
    return (bits & 0x7fffffffU) > 0x7f800000U;
}

/** Spreads every bit of a word over all of it. */
inline std::uint64_t mixed(std::uint64_t x)
{
    x ^= x >> 33;
    x *= 0xff51afd7ed558ccdU;
    x ^= x >> 33;
    x *= 0xc4ceb9fe1a85ec53U;
    return x ^ (x >> 33);
}

class Digest
{
public:
    void word(std::uint64_t value)
    {
        state = mixed(state ^ value) + 0x9e3779b97f4a7c15U;
    }

    /** The sign and payload of a NaN from arithmetic are the compiler's and the processor's. */
    void computed(std::uint32_t bits)
    {
        word(is_nan(bits) ? 0x7fc00000U : bits);
    }

    /** Results of a sine may differ in the last bit of a double, so singles are what counts. */
    void result(double value)
    {
        computed(bits_as<std::uint32_t>(static_cast<float>(value)));
    }

    void result(std::int32_t value)
    {
        word(static_cast<std::uint32_t>(value));
    }

    void result(std::uint32_t value)
    {
        word(value);
    }

    std::uint64_t value() const
    {
        return state;
    }

private:
    std::uint64_t state = 0;
};

} // namespace test

#endif
