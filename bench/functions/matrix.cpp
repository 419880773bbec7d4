/* Determinants, products, tests, copies, elementary transforms, inverses, and points. */
#include "functions.h"

#include <kxmaths5/matrix.h>

namespace
{

void add_algebra(Functions &functions)
{
    functions.add("KXM4Determinant", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXM4Determinant(&in.general.rows[i]);
    });
    functions.add("KXM3Determinant", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXM3Determinant(&in.plane_matrices[i]);
    });
    functions.add("KXM4Mult", [](const Data &in, Results &out, std::size_t i) {
        KXM4Mult(&in.affine.rows[i], &in.general.rows[i], &out.matrices[i]);
    });
    functions.add("KXM3Mult", [](const Data &in, Results &out, std::size_t i) {
        KXM3Mult(&in.plane_matrices[i], &in.plane_matrices[i], &out.plane_matrices[i]);
    });
    functions.add("KXM43Mult", [](const Data &in, Results &out, std::size_t i) {
        KXM43Mult(&in.affine.rows[i], &in.general.rows[i], &out.matrices[i]);
    });
    functions.add("KXM4Inverse", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM4Inverse(&in.affine.rows[i], &out.matrices[i]);
    });
    functions.add("KXM3Inverse", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM3Inverse(&in.plane_matrices[i], &out.plane_matrices[i]);
    });
}

void add_tests_and_copies(Functions &functions)
{
    functions.add("KXM4Unit",
                  [](const Data &, Results &out, std::size_t i) { KXM4Unit(&out.matrices[i]); });
    functions.add("KXM3Unit", [](const Data &, Results &out, std::size_t i) {
        KXM3Unit(&out.plane_matrices[i]);
    });
    functions.add("KXM4IsUnit", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM4IsUnit(&in.affine.rows[i]);
    });
    functions.add("KXM3IsUnit", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM3IsUnit(&in.plane_matrices[i]);
    });
    functions.add("KXM4IsOrthogonal", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXM4IsOrthogonal(&in.affine.rows[i]);
    });
    functions.add("KXM4Transpose", [](const Data &in, Results &out, std::size_t i) {
        KXM4Transpose(&in.affine.rows[i], &out.matrices[i]);
    });
    functions.add("KXM3Transpose", [](const Data &in, Results &out, std::size_t i) {
        KXM3Transpose(&in.plane_matrices[i], &out.plane_matrices[i]);
    });
    functions.add("KXM4Add", [](const Data &in, Results &out, std::size_t i) {
        KXM4Add(&in.affine.rows[i], &in.general.rows[i], &out.matrices[i]);
    });
    functions.add("KXM3Add", [](const Data &in, Results &out, std::size_t i) {
        KXM3Add(&in.plane_matrices[i], &in.plane_matrices[i], &out.plane_matrices[i]);
    });
    functions.add("KXM4Copy", [](const Data &in, Results &out, std::size_t i) {
        KXM4Copy(&in.affine.rows[i], &out.matrices[i]);
    });
    functions.add("KXM3Copy", [](const Data &in, Results &out, std::size_t i) {
        KXM3Copy(&in.plane_matrices[i], &out.plane_matrices[i]);
    });
}

void add_elementary(Functions &functions)
{
    functions.add("KXM4Scale", [](const Data &in, Results &out, std::size_t i) {
        KXM4Scale(in.points[i].x, in.points[i].y, in.points[i].z, &out.matrices[i]);
    });
    functions.add("KXM4Translate", [](const Data &in, Results &out, std::size_t i) {
        KXM4Translate(in.points[i].x, in.points[i].y, in.points[i].z, &out.matrices[i]);
    });
    functions.add("KXM4RotateX2", [](const Data &in, Results &out, std::size_t i) {
        KXM4RotateX2(in.unit_vectors[i].x, in.unit_vectors[i].y, &out.matrices[i]);
    });
    functions.add("KXM4RotateY2", [](const Data &in, Results &out, std::size_t i) {
        KXM4RotateY2(in.unit_vectors[i].x, in.unit_vectors[i].y, &out.matrices[i]);
    });
    functions.add("KXM4RotateZ2", [](const Data &in, Results &out, std::size_t i) {
        KXM4RotateZ2(in.unit_vectors[i].x, in.unit_vectors[i].y, &out.matrices[i]);
    });
    functions.add("KXM4ShearXY2", [](const Data &in, Results &out, std::size_t i) {
        KXM4ShearXY2(in.factors[i], &out.matrices[i]);
    });
    functions.add("KXM4ShearXZ2", [](const Data &in, Results &out, std::size_t i) {
        KXM4ShearXZ2(in.factors[i], &out.matrices[i]);
    });
    functions.add("KXM4ShearYZ2", [](const Data &in, Results &out, std::size_t i) {
        KXM4ShearYZ2(in.factors[i], &out.matrices[i]);
    });
    functions.add("KXM3Scale", [](const Data &in, Results &out, std::size_t i) {
        KXM3Scale(in.points[i].x, in.points[i].y, &out.plane_matrices[i]);
    });
    functions.add("KXM3Translate", [](const Data &in, Results &out, std::size_t i) {
        KXM3Translate(in.points[i].x, in.points[i].y, &out.plane_matrices[i]);
    });
    functions.add("KXM3Rotate2", [](const Data &in, Results &out, std::size_t i) {
        KXM3Rotate2(in.unit_vectors[i].x, in.unit_vectors[i].y, &out.plane_matrices[i]);
    });
}

void add_points(Functions &functions)
{
    functions.add("KXM3P2I0", [](const Data &in, Results &out, std::size_t i) {
        KXM3P2I0(&in.plane_matrices[i], &in.plane_points[i], &out.plane_points[i]);
    });
    functions.add("KXM3P2I1", [](const Data &in, Results &out, std::size_t i) {
        KXM3P2I1(&in.plane_matrices[i], &in.plane_points[i], &out.plane_points[i]);
    });
    functions.add("KXM4P3I0", [](const Data &in, Results &out, std::size_t i) {
        KXM4P3I0(&in.affine.rows[i], &in.points[i], &out.vectors[i]);
    });
    functions.add("KXM4P3I1", [](const Data &in, Results &out, std::size_t i) {
        KXM4P3I1(&in.affine.rows[i], &in.points[i], &out.vectors[i]);
    });
    functions.add("KXM4P4", [](const Data &in, Results &out, std::size_t i) {
        KXM4P4(&in.general.rows[i], &in.homogeneous_points[i], &out.homogeneous_points[i]);
    });
}

/** A matrix applied to an array, beside the same matrix applied to its points one by one. */
template <typename Matrix, typename Point>
void add_array_of_points(Functions &functions, const char *name, const Matrix *matrix,
                         void (*apply_to_all)(const Matrix *, uint32_t, const Point *, Point *),
                         void (*apply)(const Matrix *, const Point *, Point *))
{
    functions.add_array<Point>(
        name,
        [=](const Point *in, Point *out, uint32_t count) { apply_to_all(matrix, count, in, out); },
        [=](const Point *in, Point *out) { apply(matrix, in, out); });
}

} // namespace

void add_matrix(Functions &functions)
{
    add_algebra(functions);
    add_tests_and_copies(functions);
    add_elementary(functions);
    add_points(functions);

    const Data &in = data();
    const KXM3 *plane = &in.plane_matrices[0];
    const KXM4 *affine = &in.affine.rows[0], *general = &in.general.rows[0];
    add_array_of_points(functions, "KXM3NP2I0", plane, KXM3NP2I0, KXM3P2I0);
    add_array_of_points(functions, "KXM3NP2I1", plane, KXM3NP2I1, KXM3P2I1);
    add_array_of_points(functions, "KXM4NP3I0", affine, KXM4NP3I0, KXM4P3I0);
    add_array_of_points(functions, "KXM4NP3I1", affine, KXM4NP3I1, KXM4P3I1);
    add_array_of_points(functions, "KXM4NP4", general, KXM4NP4, KXM4P4);
}
