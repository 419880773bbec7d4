/* Axis-aligned boxes. */
#include "kxmaths5/spatial.h"

#include "numeric.h"
#include "spatial/inverted.h"

#if defined(__SSE2__) && !defined(KX_PLAIN)
#include <emmintrin.h>
#endif

using namespace kx;

namespace
{

#if defined(__SSE2__) && !defined(KX_PLAIN)

/*
 * The conversions between single and double are what takes time here. Two go side by side in one
 * register, and a product of two singles that is to be single needs none: its double is exact, so
 * the processor's product of singles has the same bits. The processor's minimum and maximum give
 * their second operand where neither is the lower or higher, and for a NaN.
 */

__m128 two_singles(const float *from)
{
    return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i *>(from)));
}

__m128d round_to_single(__m128d value)
{
    return _mm_cvtps_pd(_mm_cvtpd_ps(value));
}

/** The lowest and the highest value of one coordinate over the transformed box, in that order. */
inline __m128 transformed_interval(const float (&row)[4], const KXBox &box)
{
    // What each element contributes: its products with both ends of the box, a with the minimum and
    // b with the maximum. Only b is single.
    const __m128 x_y = two_singles(&row[0]), z_w = two_singles(&row[2]);
    const __m128d z_translation = _mm_cvtps_pd(z_w);
    const __m128d a_xy = _mm_mul_pd(_mm_cvtps_pd(two_singles(&box.minimum.x)), _mm_cvtps_pd(x_y));
    const __m128d b_xy = _mm_cvtps_pd(_mm_mul_ps(two_singles(&box.maximum.x), x_y));
    const __m128d a_z = _mm_mul_sd(_mm_set_sd(widen(box.minimum.z)), z_translation);
    const __m128d b_z = _mm_cvtps_pd(_mm_mul_ss(_mm_load_ss(&box.maximum.z), z_w));
    const __m128d lo_xy = _mm_min_pd(a_xy, b_xy), hi_xy = _mm_max_pd(b_xy, a_xy);
    const __m128d lo_z = _mm_min_sd(a_z, b_z), hi_z = _mm_max_sd(b_z, a_z);

    const __m128d translation = _mm_unpackhi_pd(z_translation, z_translation);
    const __m128d after_x = round_to_single(_mm_add_pd(translation, _mm_unpacklo_pd(lo_xy, hi_xy)));
    const __m128d after_y = round_to_single(_mm_add_pd(after_x, _mm_unpackhi_pd(lo_xy, hi_xy)));
    return _mm_cvtpd_ps(_mm_add_pd(after_y, _mm_unpacklo_pd(lo_z, hi_z)));
}

void transform(const KXBox &box, const KXM4 &m, KXBox *out)
{
    const __m128 x = transformed_interval(m.m[0], box);
    const __m128 y = transformed_interval(m.m[1], box);
    const __m128 z = transformed_interval(m.m[2], box);
    const __m128 x_y = _mm_unpacklo_ps(x, y);
    _mm_storel_pi(reinterpret_cast<__m64 *>(&out->minimum.x), x_y);
    _mm_store_ss(&out->minimum.z, z);
    _mm_storeh_pi(reinterpret_cast<__m64 *>(&out->maximum.x), x_y);
    _mm_store_ss(&out->maximum.z, _mm_shuffle_ps(z, z, _MM_SHUFFLE(1, 1, 1, 1)));
}

#else

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
    const double b = round_to_single(maximum * element);
    if (a < b) {
        return {round_to_single(so_far.lo + a), round_to_single(so_far.hi + b)};
    }
    return {round_to_single(so_far.lo + b), round_to_single(so_far.hi + a)};
}

Interval transformed_interval(const KXM4 &m, int r, const Xyz &minimum, const Xyz &maximum)
{
    const double translation = widen(m.m[r][3]);
    Interval i = {translation, translation};
    i = widen_by(i, widen(m.m[r][0]), minimum.x, maximum.x);
    i = widen_by(i, widen(m.m[r][1]), minimum.y, maximum.y);
    i = widen_by(i, widen(m.m[r][2]), minimum.z, maximum.z);
    return i;
}

void transform(const KXBox &box, const KXM4 &m, KXBox *out)
{
    const Xyz minimum = widen(box.minimum);
    const Xyz maximum = widen(box.maximum);
    const Interval x = transformed_interval(m, 0, minimum, maximum);
    const Interval y = transformed_interval(m, 1, minimum, maximum);
    const Interval z = transformed_interval(m, 2, minimum, maximum);
    out->minimum = narrow(Xyz{x.lo, y.lo, z.lo});
    out->maximum = narrow(Xyz{x.hi, y.hi, z.hi});
}

#endif

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
    transform(*box, *matrix, out);
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
