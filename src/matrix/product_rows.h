/*
 * The 4x4 product by rows, for the kernels.
 */
#ifndef KX_MATRIX_PRODUCT_ROWS_H
#define KX_MATRIX_PRODUCT_ROWS_H

#include "kxmaths5/types.h"
#include "lanes.h"

namespace
{

using kx::width;

/** Element Which of a row, in as many lanes as Part has. */
template <size_t Which, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> element_of(const kx::Lanes<sizeof...(Lane)> *row,
                                                kx::Sequence<Lane...>)
{
    constexpr size_t part = sizeof...(Lane);
    const kx::Lanes<part> &v = row[Which / part];
    return __builtin_shufflevector(v, v, static_cast<int>(((void)Lane, Which % part))...);
}

/** A row of the product is a sum of the rows of b, in vectors of four lanes or of two. */
void multiply_by_rows(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    constexpr size_t part = width < 4 ? width : 4;
    constexpr size_t parts = 4 / part;
    using Row = kx::Lanes<part>[parts];
    const auto load_row = [](const KXM4 *m, size_t r, Row &row) {
        for (size_t p = 0; p < parts; ++p) {
            row[p] = kx::load<part>(&m->m[r][p * part]);
        }
    };
    // b is read whole before the first store, and each row of a before the store to that row: out
    // may be either.
    Row rows[4];
    load_row(b, 0, rows[0]);
    load_row(b, 1, rows[1]);
    load_row(b, 2, rows[2]);
    load_row(b, 3, rows[3]);
#pragma GCC unroll 4
    for (size_t r = 0; r < 4; ++r) {
        constexpr kx::EveryLane<part> every;
        Row e;
        load_row(a, r, e);
        for (size_t p = 0; p < parts; ++p) {
            kx::store<part>(&out->m[r][p * part],
                            kx::sum_of_products(element_of<0>(e, every), rows[0][p],
                                                element_of<1>(e, every), rows[1][p],
                                                element_of<2>(e, every), rows[2][p],
                                                element_of<3>(e, every), rows[3][p]));
        }
    }
}

} // namespace

#endif
