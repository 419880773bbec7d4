/*
 * every_angle STEP
 *
 * Holds the sines and cosines that the library rounds to single to those of the C library, for one
 * angle in STEP of all singles from -2^22 to 2^22, and for the singles next to quarter turns, of
 * which little is left once those are taken off. With 1 for STEP it tries each.
 *
 * A quaternion about X has those of half its angle, unchanged; the orientation about one axis those
 * of the angle, with zero for what is below 1e-07.
 */
#include "support/digest.h"

#include <kxmaths5.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr std::uint32_t sign_bit = 0x80000000U;
constexpr std::uint32_t largest_bits = 0x4a800000U; // 2^22
constexpr double quarter_turn = 1.5707963267948966;
constexpr int quarter_turns = 2670176; // in 2^22

unsigned long tried = 0;
unsigned long wrong = 0;

bool is_same(float a, float b)
{
    return test::bits_as<std::uint32_t>(a) == test::bits_as<std::uint32_t>(b);
}

float or_zero(float value)
{
    return std::fabs(static_cast<double>(value)) >= 1e-07 ? value : 0.0f;
}

/** About which axis an angle gives another sine or cosine than the C library; none for none. */
const char *fault_of(float angle)
{
    const float sine = static_cast<float>(std::sin(static_cast<double>(angle)));
    const float cosine = static_cast<float>(std::cos(static_cast<double>(angle)));
    constexpr KXV3 x_axis = {1, 0, 0};
    KXQuat q;
    KXGenerateQuat(2 * angle, &x_axis, &q);
    if (!is_same(q.x, sine) || !is_same(q.w, cosine)) {
        return "half a turn about X";
    }
    static const char *const names[3] = {"X", "Y", "Z"};
    for (int axis = 0; axis < 3; ++axis) {
        const int from = (axis + 1) % 3, to = (axis + 2) % 3;
        KXM4 m;
        KXM4Orientation(&m, nullptr, axis == 0 ? angle : 0, axis == 1 ? angle : 0,
                        axis == 2 ? angle : 0, KX_ORDER_XYZ);
        if (!is_same(m.m[to][from], or_zero(sine)) || !is_same(m.m[to][to], or_zero(cosine))) {
            return names[axis];
        }
    }
    return nullptr;
}

void try_angle(std::uint32_t bits)
{
    const auto angle = test::bits_as<float>(bits);
    ++tried;
    const char *const fault = fault_of(angle);
    if (fault != nullptr && ++wrong <= 10) {
        std::printf("%a: another sine or cosine, about %s\n", static_cast<double>(angle), fault);
    }
}

} // namespace

int main(int argc, char **argv)
{
    char *end = nullptr;
    const unsigned long step = argc == 2 ? std::strtoul(argv[1], &end, 10) : 0;
    if (step == 0 || step > largest_bits || *end != '\0') {
        std::fprintf(stderr, "usage: every_angle STEP, from 1 for all angles to %lu\n",
                     static_cast<unsigned long>(largest_bits));
        return 2;
    }
    for (std::uint64_t bits = 0; bits <= largest_bits; bits += step) {
        try_angle(static_cast<std::uint32_t>(bits));
        try_angle(static_cast<std::uint32_t>(bits) | sign_bit);
    }
    for (int n = 1; step > 1 && n <= quarter_turns; n += 101) {
        const auto bits = test::bits_as<std::uint32_t>(static_cast<float>(n * quarter_turn));
        try_angle(bits);
        try_angle(bits | sign_bit);
    }
    try_angle(largest_bits);
    try_angle(largest_bits + 1);
    std::printf("%lu angles, %lu with another sine or cosine than the C library's\n", tried, wrong);
    return wrong == 0 ? 0 : 1;
}
