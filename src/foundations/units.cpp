/* Conversion of lengths between ten units. */
#include "kxmaths5/foundations.h"

#include "numeric.h"

using namespace kx;

namespace
{

/*
 * Row: the unit of the length. Column: the unit wanted. These are data, each the shortest decimal
 * of its single. They do not follow from a few base lengths, and two opposite factors do not
 * multiply to 1, so no entry can be computed from the others.
 */
constexpr float unit_factor[10][10] = {
    {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f},
    {1.0f, 1.0f, 0.1f, 0.001f, 1e-6f, 0.03937008f, 0.00328084f, 0.0010936132f, 6.213712e-7f,
     5.3995683e-7f},
    {1.0f, 10.0f, 1.0f, 0.01f, 1e-5f, 0.39370078f, 0.0328084f, 0.010936133f, 6.2137115e-6f,
     5.399568e-6f},
    {1.0f, 1000.0f, 100.0f, 1.0f, 0.001f, 39.37008f, 3.28084f, 1.0936133f, 0.0006213712f,
     0.0005399568f},
    {1.0f, 1000000.0f, 100000.0f, 1000.0f, 1.0f, 39370.08f, 3280.84f, 1093.6133f, 0.6213712f,
     0.5399568f},
    {1.0f, 25.4f, 2.54f, 0.0254f, 2.54e-5f, 1.0f, 0.083333336f, 0.027777778f, 1.5782829e-5f,
     1.3714903e-5f},
    {1.0f, 304.8f, 30.48f, 0.3048f, 0.0003048f, 12.0f, 1.0f, 0.33333334f, 0.00018939393f,
     0.00016457883f},
    {1.0f, 914.4f, 91.44f, 0.9144f, 0.0009144f, 36.0f, 3.0f, 1.0f, 0.0005681818f, 0.0004937365f},
    {1.0f, 1609344.0f, 160934.4f, 1609.344f, 1.609344f, 63360.0f, 5280.0f, 1760.0f, 1.0f,
     0.86897624f},
    {1.0f, 1852000.0f, 185200.0f, 1852.0f, 1.852f, 72913.38f, 6076.1157f, 2025.3718f, 1.1507795f,
     1.0f},
};

double factor_between(KXUnit from, KXUnit to)
{
    return widen(unit_factor[from][to]);
}

void convert(double factor, float &length)
{
    length = narrow(widen(length) * factor);
}

/** KXP3 or KXP4; w is not a length. */
template <typename Point>
void convert_point(double factor, Point &p)
{
    convert(factor, p.x);
    convert(factor, p.y);
    convert(factor, p.z);
}

} // namespace

void KXChangeUnits(KXUnit from, KXUnit to, float *value)
{
    convert(factor_between(from, to), *value);
}

void KXP3ChangeUnits(KXUnit from, KXUnit to, KXP3 *p)
{
    convert_point(factor_between(from, to), *p);
}

void KXP4ChangeUnits(KXUnit from, KXUnit to, KXP4 *p)
{
    convert_point(factor_between(from, to), *p);
}

void KXBoxChangeUnits(KXUnit from, KXUnit to, KXBox *box)
{
    const double factor = factor_between(from, to);
    convert_point(factor, box->minimum);
    convert_point(factor, box->maximum);
}

void KXPlaneChangeUnits(KXUnit from, KXUnit to, KXPlane *plane)
{
    convert(factor_between(from, to), plane->d);
}

void KXM4ChangeUnits(KXUnit from, KXUnit to, KXM4 *m)
{
    const double factor = factor_between(from, to);
    for (int r = 0; r < 3; ++r) {
        convert(factor, m->m[r][3]);
    }
}

void KXP3ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP3 *points)
{
    const double factor = factor_between(from, to);
    for (uint32_t i = 0; i < count; ++i) {
        convert_point(factor, points[i]);
    }
}

void KXP4ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP4 *points)
{
    const double factor = factor_between(from, to);
    for (uint32_t i = 0; i < count; ++i) {
        convert_point(factor, points[i]);
    }
}

void KXPlaneChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXPlane *planes)
{
    const double factor = factor_between(from, to);
    for (uint32_t i = 0; i < count; ++i) {
        convert(factor, planes[i].d);
    }
}
