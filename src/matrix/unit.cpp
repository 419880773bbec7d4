/* The identity, and the test for it. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

using namespace kx;

namespace
{

template <int Size, typename Matrix>
int32_t is_unit(const Matrix *m)
{
    for (int r = 0; r < Size; ++r) {
        for (int c = 0; c < Size; ++c) {
            const double element = widen(m->m[r][c]);
            const double difference = r == c ? element - 1.0 : element;
            if (magnitude(difference) > tolerance) {
                return 0;
            }
        }
    }
    return 1;
}

} // namespace

void KXM4Unit(KXM4 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f, 0.0f},
             {0.0f, 1.0f, 0.0f, 0.0f},
             {0.0f, 0.0f, 1.0f, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM3Unit(KXM3 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}};
}

int32_t KXM4IsUnit(const KXM4 *m)
{
    return is_unit<4>(m);
}

int32_t KXM3IsUnit(const KXM3 *m)
{
    return is_unit<3>(m);
}
