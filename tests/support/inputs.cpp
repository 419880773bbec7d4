#include "inputs.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace test
{

namespace
{

/** Neighbours of a boundary count as much as the boundary. */
constexpr float constants[] = {
    0.0f,        1.0f,       0.5f,   2.0f,           1e-6f,       1e-7f,
    1e20f,       1.5707964f, 0.001f, 3.1415927f,     4.712389f,   6.2831855f,
    0.7853982f,  1e-15f,     1e-16f, 1.1754944e-38f, 1.4013e-45f, 3.4028235e38f,
    16777216.0f, 4097.0f,    1e-4f,  0.99999905f,    0.999999f,   1.000001f,
};

template <std::size_t Size>
void set_last_row(float (&m)[Size][Size])
{
    for (std::size_t c = 0; c < Size; ++c) {
        m[Size - 1][c] = c + 1 == Size ? 1.0f : 0.0f;
    }
}

} // namespace

Inputs::Inputs(const char *function) : state(0x6b786d61746873U)
{
    for (; *function != '\0'; ++function) {
        state = mixed(state ^ static_cast<unsigned char>(*function)) + 1;
    }
}

std::uint32_t Inputs::word()
{
    state += 0x9e3779b97f4a7c15U;
    return static_cast<std::uint32_t>(mixed(state) >> 32);
}

std::uint32_t Inputs::below(std::uint32_t limit)
{
    return static_cast<std::uint32_t>((std::uint64_t{word()} * limit) >> 32);
}

void Inputs::next_kind()
{
    constexpr Kind kinds[] = {Kind::lattice,  Kind::lattice,  Kind::ordinary, Kind::ordinary,
                              Kind::ordinary, Kind::boundary, Kind::boundary, Kind::any_bits};
    kind = kinds[below(8)];
}

void Inputs::use(Kind chosen)
{
    kind = chosen;
}

std::uint32_t Inputs::number_bits()
{
    const auto quarter = [this] {
        return bits_as<std::uint32_t>((static_cast<float>(below(33)) - 16.0f) * 0.25f);
    };
    switch (kind) {
    case Kind::lattice:
        return below(32) == 0 ? 0x80000000U : quarter();
    case Kind::ordinary:
        return bits_as<std::uint32_t>((static_cast<float>(word() >> 8) - 8388608.0f) * 0x1p-20f);
    case Kind::boundary: {
        if (below(4) == 0) {
            return quarter();
        }
        const std::uint32_t at = bits_as<std::uint32_t>(constants[below(std::size(constants))]);
        const std::uint32_t beside = at + below(3) - (at == 0 ? 0U : 1U);
        return beside | (word() & 0x80000000U);
    }
    case Kind::any_bits: {
        const std::uint32_t bits = word();
        return is_nan(bits) ? bits & 0xff800000U : bits;
    }
    case Kind::moved_nans:
        break;
    }
    if (below(2) != 0) {
        return quarter();
    }
    const std::uint32_t payload = below(0x7ffffeU);
    return 0x7f800001U + payload + (word() & 0x80000000U);
}

float Inputs::number()
{
    return bits_as<float>(number_bits());
}

/** A rotation from a quaternion of small integers: quarter turns and others, with no sine in it. */
void Inputs::make_rotation(KXM4 *m)
{
    const auto part = [this] { return static_cast<double>(below(9)) - 4.0; };
    const double x = part(), y = part(), z = part(), w = part();
    const double n = std::max(x * x + y * y + z * z + w * w, 1.0);
    const double block[3][3] = {
        {n - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
        {2 * (x * y + w * z), n - 2 * (x * x + z * z), 2 * (y * z - w * x)},
        {2 * (x * z - w * y), 2 * (y * z + w * x), n - 2 * (x * x + y * y)},
    };
    const bool scaled_rows = below(2) == 0, scaled_columns = below(2) == 0;
    const double s[3] = {part(), part(), part()};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            double element = block[r][c] / n;
            element = scaled_rows ? element * s[r] : element;
            element = scaled_columns ? element * s[2 - c] : element;
            m->m[r][c] = static_cast<float>(element);
        }
    }
}

/** The unit matrix, but for one element. */
template <std::size_t Size>
void Inputs::make_near_unit(float (&m)[Size][Size])
{
    const std::size_t odd_row = below(Size), odd_column = below(Size);
    for (std::size_t r = 0; r < Size; ++r) {
        for (std::size_t c = 0; c < Size; ++c) {
            if (r != odd_row || c != odd_column) {
                m[r][c] = r == c ? 1.0f : 0.0f;
            }
        }
    }
}

/** Of the first three rows one is a multiple of another, or nothing. */
template <std::size_t Size>
void Inputs::make_singular(float (&m)[Size][Size])
{
    const std::uint32_t from = below(3), to = below(3);
    const float factor = static_cast<float>(below(5)) - 2.0f;
    for (std::size_t c = 0; c < 3; ++c) {
        m[to][c] = factor == 0.0f ? 0.0f : m[from][c] * factor; // 0 times infinity is a NaN
    }
}

void Inputs::fill(KXM3 *m)
{
    fill<KXM3>(m);
    if (kind == Kind::moved_nans) {
        return;
    }
    const std::uint32_t form = below(8);
    if (form == 0) {
        make_near_unit(m->m);
    } else if (form == 1) {
        make_singular(m->m);
    } else if (form < 5) {
        set_last_row(m->m);
    }
}

void Inputs::fill(KXM4 *m)
{
    fill<KXM4>(m);
    if (kind == Kind::moved_nans) {
        return;
    }
    const std::uint32_t form = below(8);
    if (form == 0) {
        make_near_unit(m->m);
        return;
    }
    if (form == 1) {
        make_singular(m->m);
    } else if (form < 5) {
        make_rotation(m);
    }
    // Half of them affine, the others with perspective.
    if (below(2) == 0) {
        set_last_row(m->m);
    }
}

void Inputs::fill(KXBox *box)
{
    fill(&box->minimum);
    fill(&box->maximum);
    if (below(4) != 0) {
        const auto order = [](float &low, float &high) {
            if (high < low) {
                std::swap(low, high);
            }
        };
        order(box->minimum.x, box->maximum.x);
        order(box->minimum.y, box->maximum.y);
        order(box->minimum.z, box->maximum.z);
    }
}

void Inputs::fill(KXP3 (&vertices)[4], KXTriangle *triangle)
{
    for (KXP3 &vertex : vertices) {
        fill(&vertex);
    }
    for (KXTriangleCorner &corner : triangle->corner) {
        corner = {word(), below(4), word(), word()};
    }
    triangle->host = word();
    if (below(8) == 0) {
        fill(&triangle->plane);
    } else {
        KXPlaneEquation(&vertices[triangle->corner[0].vertex],
                        &vertices[triangle->corner[1].vertex],
                        &vertices[triangle->corner[2].vertex], &triangle->plane);
    }
}

} // namespace test
