/* Axis-aligned boxes. */
#include "kxmaths5/spatial.h"

#include "kernels.h"
#include "numeric.h"

using namespace kx;

namespace
{

bool lower(float &bound, float value)
{
    if (widen(value) < widen(bound)) {
        bound = value;
        return true;
    }
    return false;
}

bool raise(float &bound, float value)
{
    if (widen(value) > widen(bound)) {
        bound = value;
        return true;
    }
    return false;
}

bool lower_each(KXP3 &minimum, const KXP3 &p)
{
    const bool x = lower(minimum.x, p.x);
    const bool y = lower(minimum.y, p.y);
    const bool z = lower(minimum.z, p.z);
    return x || y || z;
}

bool raise_each(KXP3 &maximum, const KXP3 &p)
{
    const bool x = raise(maximum.x, p.x);
    const bool y = raise(maximum.y, p.y);
    const bool z = raise(maximum.z, p.z);
    return x || y || z;
}

} // namespace

void KXTransformBox(const KXBox *box, const KXM4 *matrix, KXBox *out)
{
    if (is_inverted(widen(box->minimum), widen(box->maximum))) {
        const KXBox original = *box;
        *out = original;
        return;
    }
    KX_DISPATCH(transform_box(box, matrix, out));
}

int32_t KXPutPointInBox(const KXP3 *point, KXBox *box)
{
    // Both are tried: in an inverted box one point can move both corners.
    const bool lowered = lower_each(box->minimum, *point);
    const bool raised = raise_each(box->maximum, *point);
    return lowered || raised;
}

void KXCombineBoxes(KXBox *box, const KXBox *other)
{
    lower_each(box->minimum, other->minimum);
    raise_each(box->maximum, other->maximum);
}

void KXBoxMidPoint(const KXBox *box, KXP3 *out)
{
    const Xyz lo = widen(box->minimum);
    const Xyz hi = widen(box->maximum);
    *out = narrow(Xyz{(hi.x + lo.x) * 0.5, (hi.y + lo.y) * 0.5, (hi.z + lo.z) * 0.5});
}

void KXBoxDiagonal(const KXBox *box, KXV3 *out)
{
    const Xyz lo = widen(box->minimum);
    const Xyz hi = widen(box->maximum);
    *out = narrow(Xyz{hi.x - lo.x, hi.y - lo.y, hi.z - lo.z});
}

int32_t KXIsValidBox(const KXBox *box)
{
    // Not the negation of is_inverted: a NaN makes a box neither.
    const Xyz lo = widen(box->minimum);
    const Xyz hi = widen(box->maximum);
    return hi.x >= lo.x && hi.y >= lo.y && hi.z >= lo.z;
}
