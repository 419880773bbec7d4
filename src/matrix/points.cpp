/* Matrices applied to points, one at a time and in arrays. */
#include "kxmaths5/matrix.h"

#include "matrix/forms.h"
#include "matrix/kernels.h"

using namespace kx;

void KXM3P2I0(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    *out = direction(*m, *p);
}

void KXM3P2I1(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    *out = position(*m, *p);
}

void KXM4P3I0(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    *out = direction(*m, *p);
}

void KXM4P3I1(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    *out = position(*m, *p);
}

void KXM4P4(const KXM4 *m, const KXP4 *p, KXP4 *out)
{
    *out = homogeneous(*m, *p);
}

void KXM3NP2I0(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    KX_DISPATCH(directions(m, count, in, out));
}

void KXM3NP2I1(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    KX_DISPATCH(positions(m, count, in, out));
}

void KXM4NP3I0(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    KX_DISPATCH(directions(m, count, in, out));
}

void KXM4NP3I1(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    KX_DISPATCH(positions(m, count, in, out));
}

void KXM4NP4(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    KX_DISPATCH(homogeneous(m, count, in, out));
}
