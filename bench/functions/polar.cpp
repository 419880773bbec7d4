/* Range, bearing, elevation and azimuth. */
#include "functions.h"

#include <kxmaths5/polar.h>

void add_polar(Functions &functions)
{
    functions.add("KXRange", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXRange(&in.points[i], &in.other_points[i]);
    });
    functions.add("KXBearing", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXBearing(&in.points[i], &in.other_points[i]);
    });
    functions.add("KXREAToPoint", [](const Data &in, Results &out, std::size_t i) {
        KXREAToPoint(in.factors[i], in.angles[i].x, in.angles[i].y, &out.vectors[i]);
    });
    functions.add("KXEAToVector", [](const Data &in, Results &out, std::size_t i) {
        KXEAToVector(in.angles[i].x, in.angles[i].y, &out.vectors[i]);
    });
    functions.add("KXPointsToREA", [](const Data &in, Results &out, std::size_t i) {
        KXPointsToREA(&in.points[i], &in.other_points[i], &out.singles[i], &out.other_singles[i],
                      &out.third_singles[i]);
    });
    functions.add("KXVectorToEA", [](const Data &in, Results &out, std::size_t i) {
        KXVectorToEA(&in.points[i], &out.singles[i], &out.other_singles[i]);
    });
}
