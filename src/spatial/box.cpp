/* Axis-aligned boxes. */
#include "kxmaths5/spatial.h"

#include "numeric.h"
#include "spatial/inverted.h"

using kx::Wide3;

namespace
{

/** The lowest and highest value of one coordinate over the transformed box, both singles. */
struct Interval {
    double lo, hi;
};

/**
 * Adds what one matrix element contributes: the products of the element with both ends of the box.
 * Of the two products only the one with the maximum is single.
 */
Interval widen_by(const Interval &so_far, double element, double minimum, double maximum)
{
    const double a = minimum * element;
    const double b = kx::rounded(maximum * element);
    if (a < b) {
        return {kx::rounded(so_far.lo + a), kx::rounded(so_far.hi + b)};
    }
    return {kx::rounded(so_far.lo + b), kx::rounded(so_far.hi + a)};
}

Interval transformed_interval(const KXM4 &m, int r, const Wide3 &minimum, const Wide3 &maximum)
{
    const double translation = kx::wide(m.m[r][3]);
    Interval i = {translation, translation};
    i = widen_by(i, kx::wide(m.m[r][0]), minimum.x, maximum.x);
    i = widen_by(i, kx::wide(m.m[r][1]), minimum.y, maximum.y);
    i = widen_by(i, kx::wide(m.m[r][2]), minimum.z, maximum.z);
    return i;
}

bool lower(float &bound, float value)
{
    if (kx::wide(value) < kx::wide(bound)) {
        bound = value;
        return true;
    }
    return false;
}

bool raise(float &bound, float value)
{
    if (kx::wide(value) > kx::wide(bound)) {
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
    const KXBox original = *box;
    const Wide3 minimum = kx::wide(original.minimum);
    const Wide3 maximum = kx::wide(original.maximum);
    if (kx::is_inverted(minimum, maximum)) {
        *out = original;
        return;
    }
    const Interval x = transformed_interval(*matrix, 0, minimum, maximum);
    const Interval y = transformed_interval(*matrix, 1, minimum, maximum);
    const Interval z = transformed_interval(*matrix, 2, minimum, maximum);
    out->minimum = kx::single(Wide3{x.lo, y.lo, z.lo});
    out->maximum = kx::single(Wide3{x.hi, y.hi, z.hi});
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
    const Wide3 lo = kx::wide(box->minimum);
    const Wide3 hi = kx::wide(box->maximum);
    *out = kx::single(Wide3{(hi.x + lo.x) * 0.5, (hi.y + lo.y) * 0.5, (hi.z + lo.z) * 0.5});
}

void KXBoxDiagonal(const KXBox *box, KXV3 *out)
{
    const Wide3 lo = kx::wide(box->minimum);
    const Wide3 hi = kx::wide(box->maximum);
    *out = kx::single(Wide3{hi.x - lo.x, hi.y - lo.y, hi.z - lo.z});
}

int32_t KXIsValidBox(const KXBox *box)
{
    // Not the negation of is_inverted: a NaN makes a box neither.
    const Wide3 lo = kx::wide(box->minimum);
    const Wide3 hi = kx::wide(box->maximum);
    return hi.x >= lo.x && hi.y >= lo.y && hi.z >= lo.z;
}
