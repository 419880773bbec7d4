/* Determinants, products, and matrices applied to points. */
#include "experiment.h"

namespace accuracy
{
namespace
{

template <typename Record>
Record random_record(Random &random, double limit)
{
    Record record;
    std::array<float, sizeof(Record) / sizeof(float)> values;
    for (float &value : values) {
        value = random.uniform(limit);
    }
    std::memcpy(&record, values.data(), sizeof record);
    return record;
}

/** What no determinant of these rows exceeds, by Hadamard. */
template <typename Matrix>
Quad product_of_lengths(const Matrix &m)
{
    Quad product = 1;
    for (Eigen::Index r = 0; r < m.rows(); ++r) {
        product *= m.row(r).squaredNorm();
    }
    return sqrtq(product);
}

template <typename Record, double (*determinant)(const Record *)>
bool measure_determinant(Case &c)
{
    const Record m = random_record<Record>(c.random, 1000);
    c.given(m);
    c.error(0, determinant(&m), wide(m).determinant(), product_of_lengths(wide(m)));
    return true;
}

template <typename Record, void (*product)(const Record *, const Record *, Record *)>
bool multiply(Case &c)
{
    const Record a = random_record<Record>(c.random, 1000);
    const Record b = random_record<Record>(c.random, 1000);
    c.given(a, b);
    Record out;
    product(&a, &b, &out);
    c.error(0, wide(out), (wide(a) * wide(b)).eval());
    return true;
}

bool multiply_blocks(Case &c)
{
    const KXM4 a = random_record<KXM4>(c.random, 1000), b = random_record<KXM4>(c.random, 1000);
    c.given(a, b);
    KXM4 out;
    KXM43Mult(&a, &b, &out);
    c.error(0, block(out), (block(a) * block(b)).eval());
    return true;
}

bool move_in_plane(Case &c)
{
    const KXM3 m = random_record<KXM3>(c.random, 1000);
    const KXP2 p = random_record<KXP2>(c.random, 1000);
    c.given(m, p);
    KXP2 out;
    KXM3P2I1(&m, &p, &out);
    const Vector3 wanted = wide(m) * Vector3(p.x, p.y, 1);
    c.error(0, out.x, wanted.x());
    c.error(0, out.y, wanted.y());
    return true;
}

template <void (*apply)(const KXM4 *, const KXP3 *, KXP3 *), int Last>
bool transform_point(Case &c)
{
    const KXM4 m = random_record<KXM4>(c.random, 1000);
    const KXP3 p = c.random.uniform_vector(1000);
    c.given(m, p);
    KXP3 out;
    apply(&m, &p, &out);
    c.error(0, wide(out), Vector3(block(m) * wide(p) + translation(m) * Last));
    return true;
}

bool transform_homogeneous(Case &c)
{
    const KXM4 m = random_record<KXM4>(c.random, 1000);
    const KXP4 p = random_record<KXP4>(c.random, 1000);
    c.given(m, p);
    KXP4 out;
    KXM4P4(&m, &p, &out);
    c.error(0, wide(out), Vector4(wide(m) * wide(p)));
    return true;
}

} // namespace

Experiments matrices()
{
    const char *const elements = "elements in [-1000, 1000]";
    const char *const both = "elements and coordinates in [-1000, 1000]";
    const std::vector<Result> determinant = {
        {"determinant", "the product of the rows' lengths", true}};
    return {
        {"KXM4Determinant", elements, determinant, measure_determinant<KXM4, KXM4Determinant>},
        {"KXM3Determinant", elements, determinant, measure_determinant<KXM3, KXM3Determinant>},
        {"KXM4Mult", elements, {{"elements", itself}}, multiply<KXM4, KXM4Mult>},
        {"KXM3Mult", elements, {{"elements", itself}}, multiply<KXM3, KXM3Mult>},
        {"KXM43Mult", elements, {{"block", itself}}, multiply_blocks},
        {"KXM3P2I1", both, {{"x, y", itself}}, move_in_plane},
        {"KXM4P3I0", both, {{"x, y, z", itself}}, transform_point<KXM4P3I0, 0>},
        {"KXM4P3I1", both, {{"x, y, z", itself}}, transform_point<KXM4P3I1, 1>},
        {"KXM4P4", both, {{"x, y, z, w", itself}}, transform_homogeneous},
    };
}

} // namespace accuracy
