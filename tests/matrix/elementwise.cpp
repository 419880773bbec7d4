#include "support/rows.h"

using namespace test;

/** A record whose words are all different, signalling NaNs among them. */
template <typename Matrix>
static Matrix patterns()
{
    Words<Matrix> words;
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = 0x7f800001U + static_cast<std::uint32_t>(i) * 0x01111111U;
    }
    return bits_as<Matrix>(words);
}

template <int Size, typename Matrix>
static void check_moves(void (*transpose)(const Matrix *, Matrix *),
                        void (*copy)(const Matrix *, Matrix *))
{
    const auto m = patterns<Matrix>();
    rows_of(copy)("copy", m, m);
    const auto from = bits_as<Words<Matrix>>(m);
    Words<Matrix> to;
    for (std::size_t i = 0; i < to.size(); ++i) {
        to[i] = from[i % Size * Size + i / Size];
    }
    rows_of(transpose)("transpose", m, bits_as<Matrix>(to));
}

TEST_CASE("Copies and transposes move every bit")
{
    check_moves<4>(KXM4Transpose, KXM4Copy);
    check_moves<3>(KXM3Transpose, KXM3Copy);
}

template <typename Matrix>
static void check_sum(void (*add)(const Matrix *, const Matrix *, Matrix *))
{
    const auto check = rows_of(add);
    using Floats = std::array<float, sizeof(Matrix) / 4>;
    Floats a, b, sum;
    for (std::size_t i = 0; i < a.size(); ++i) {
        a[i] = static_cast<float>(i) + 0.5f;
        b[i] = static_cast<float>(i * i);
        sum[i] = a[i] + b[i]; // exact
    }
    a[0] = b[0] = sum[0] = -0.0f;
    check("sum", bits_as<Matrix>(a), bits_as<Matrix>(b), bits_as<Matrix>(sum));
    sum = a;
    sum[0] = 0;
    check("zeros clear the sign of a zero", bits_as<Matrix>(a), {}, bits_as<Matrix>(sum));
}

TEST_CASE("KXM4Add and KXM3Add")
{
    check_sum(KXM4Add);
    check_sum(KXM3Add);
}
