/* The determinant of a 4x4 matrix. */
#include "kernels.h"

#include "numeric.h"
#include "simd/four.h"

namespace kx
{
namespace KX_INSTRUCTION_SET
{

double determinant(const KXM4 *m)
{
    const Double4 row0 = load4(m->m[0]), row1 = load4(m->m[1]);
    const Double4 row2 = load4(m->m[2]), row3 = load4(m->m[3]);

    // The minors of rows 2 and 3, each named by its two columns: m2a*m3b - m2b*m3a. They are
    // singles, so a block with 16777217 in one of them gives 16777216. The 3x3 form has no such
    // rounding.
    const Double4 of_01_12_03_23 = round_to_single(
        subtract_exact_product(permute<0, 1, 0, 2>(row2) * permute<1, 2, 3, 3>(row3),
                               permute<1, 2, 3, 3>(row2), permute<0, 1, 0, 2>(row3)));
    const Double2 of_02_13 =
        round_to_single(subtract_exact_product(low_half(row2) * high_half(row3), //
                                               high_half(row2), low_half(row3)));

    // The minors of row 0, expanded along row 1:
    //     0:  m11*23 - m12*13 + m13*12        1:  m10*23 - m12*03 + m13*02
    //     2:  m10*13 - m11*03 + m13*01        3:  m10*12 - m11*02 + m12*01
    const Double4 last = in_low_half(of_02_13);
    const Double4 of_23_23_13_12 = permute<3, 3, 5, 1>(of_01_12_03_23, last);
    const Double4 of_13_03_03_02 = permute<5, 2, 2, 4>(of_01_12_03_23, last);
    const Double4 of_12_02_01_01 = permute<1, 4, 0, 0>(of_01_12_03_23, last);
    const Double4 first = permute<1, 0, 0, 0>(row1) * of_23_23_13_12;
    const Double4 two = subtract_exact_product(first, permute<2, 2, 1, 1>(row1), of_13_03_03_02);
    const Double4 minors = add_exact_product(permute<3, 3, 3, 2>(row1), of_12_02_01_01, two);

    const Double4 terms = row0 * minors;
    const Double2 terms01 = low_half(terms), terms23 = high_half(terms);
    return low(terms01) - high(terms01) + low(terms23) - high(terms23);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
