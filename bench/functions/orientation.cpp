/* Matrices from angles and positions. */
#include "functions.h"

#include <kxmaths5/orientation.h>

void add_orientation(Functions &functions)
{
    functions.add("KXM4Orientation", [](const Data &in, Results &out, std::size_t i) {
        KXM4Orientation(&out.matrices[i], &out.other_matrices[i], in.angles[i].x, in.angles[i].y,
                        in.angles[i].z, static_cast<KXRotationOrder>(i % 6));
    });
    functions.add("KXM4Position", [](const Data &in, Results &out, std::size_t i) {
        KXM4Position(&out.matrices[i], &out.other_matrices[i], &in.positions[i],
                     static_cast<KXRotationOrder>(i % 6));
    });
    functions.add("KXM4Projection1", [](const Data &in, Results &out, std::size_t i) {
        KXM4Projection1(&out.matrices[i], &in.positions[i], 2.0f, 0.03f, in.factors[i]);
    });
}
