/* Products, inverses, determinants, and matrices from angles. */
#include "comparison.h"
#include "data.h"

namespace
{

Comparison row(const char *operation, const char *kernel, const Matrices &first,
               const Matrices &second, double tolerance, std::vector<Peer> peers)
{
    static const Memory out = allocate(record_count * sizeof(KXM4));
    Work ours = {};
    ours.first = first.rows;
    ours.second = second.rows;
    ours.out = out.get();
    ours.count = record_count;
    ours.groups = 1;
    Work theirs = ours;
    theirs.first = first.columns;
    theirs.second = second.columns;
    return {operation, kernel,      ours, theirs, std::move(peers), difference_of_matrices,
            tolerance, sizeof(KXM4)};
}

Comparison determinant_row()
{
    const Data &in = data();
    Comparison out = row("4x4 determinant", "determinant", in.general, in.general, 1e-4,
                         {{glm_plain, {1.2}}, {glm_intrinsics}, {cglm}, {eigen}, {imath}});
    out.difference = difference_of_records<1>;
    out.bytes = sizeof(float);
    return out;
}

Comparison orientation_row()
{
    const Data &in = data();
    Comparison out = row("orientation from three angles, one output", "orientation", in.affine,
                         in.affine, 1e-5, {{glm_plain, {1.6}}, {cglm}});
    out.ours.first = out.theirs.first = in.angles;
    return out;
}

} // namespace

std::vector<Comparison> matrix_comparisons()
{
    const Data &in = data();
    // A peer that works in single loses what the matrix's condition costs.
    constexpr double of_inverses = 1e-3;
    std::vector<Comparison> rows;
    rows.push_back(row("4x4 product", "product", in.affine, in.general, 1e-5,
                       {{cglm, {1.15}}, {glm_plain}, {glm_intrinsics}, {eigen}, {imath}}));
    rows.push_back(row("4x4 product, each of the one before", "product_chain", in.placements,
                       in.placements, 1e-5,
                       {{glm_plain, {1.10}}, {glm_intrinsics}, {cglm}, {eigen}, {imath}}));
    rows.push_back(row("inverse, affine", "inverse_affine", in.affine, in.affine, of_inverses,
                       {{imath, {0.85}}, {glm_plain, {1.6}}, {glm_intrinsics}, {eigen}}));
    rows.push_back(row("inverse, general", "inverse_general", in.general, in.general, of_inverses,
                       {{imath, {0.42}}, {glm_plain, {2.0}}, {glm_intrinsics}, {cglm}, {eigen}}));
    rows.push_back(determinant_row());
    rows.push_back(orientation_row());
    return rows;
}
