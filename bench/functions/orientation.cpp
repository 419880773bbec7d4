/* Matrices from angles, positions and parts, the way back, and quaternions. */
#include "functions.h"

#include <kxmaths5/orientation.h>

namespace
{

void add_parts(Functions &functions)
{
    functions.add("KXM4Decompose", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM4Decompose(&in.affine.rows[i], &out.components[i]);
    });
    functions.add("KXM4Compose", [](const Data &in, Results &out, std::size_t i) {
        KXM4Compose(&out.matrices[i], &in.components[i]);
    });
    functions.add("KXM3Decompose", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM3Decompose(&in.plane_matrices[i], &out.components[i]);
    });
    functions.add("KXM3Compose", [](const Data &in, Results &out, std::size_t i) {
        KXM3Compose(&out.plane_matrices[i], &in.components[i]);
    });
    functions.add("KXM4MatrixComponents", [](const Data &in, Results &out, std::size_t i) {
        KXM4MatrixComponents(&in.affine.rows[i], &out.positions[i], &out.vectors[i]);
    });
    functions.add("KXM3MatrixComponents", [](const Data &in, Results &out, std::size_t i) {
        KXM3MatrixComponents(&in.plane_matrices[i], &out.plane_points[i], &out.singles[i],
                             &out.other_singles[i], &out.third_singles[i]);
    });
}

void add_quaternions(Functions &functions)
{
    functions.add("KXGenerateQuat", [](const Data &in, Results &out, std::size_t i) {
        KXGenerateQuat(in.angles[i].x, &in.unit_vectors[i], &out.quaternions[i]);
    });
    functions.add("KXQuatToMatrix", [](const Data &in, Results &out, std::size_t i) {
        KXQuatToMatrix(&in.quaternions[i], &out.matrices[i]);
    });
    functions.add("KXMatrixToQuat", [](const Data &in, Results &out, std::size_t i) {
        KXMatrixToQuat(&in.placements.rows[i], &out.quaternions[i]);
    });
}

} // namespace

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
    add_parts(functions);
    add_quaternions(functions);
}
