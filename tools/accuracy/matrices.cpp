/* Determinants, products, matrices applied to points, and inversion. */
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

/** A rotation of four dimensions: p*x*q, with p and q unit quaternions and x a quaternion. */
Eigen::Matrix4d rotation_of_four(Random &random)
{
    const Eigen::Quaterniond p(random.direction<4>()), q(random.direction<4>());
    Eigen::Matrix4d m;
    for (int c = 0; c < 4; ++c) {
        const Eigen::Quaterniond axis(Eigen::Vector4d(Eigen::Vector4d::Unit(c)));
        m.col(c) = (p * axis * q).coeffs();
    }
    return m;
}

bool invert_affine(Case &c, const Eigen::Matrix3d &drawn)
{
    const KXM4 m = affine(drawn, c.random.uniform_vector(1000));
    c.given(m);
    KXM4 out;
    if (KXM4Inverse(&m, &out) != 0) {
        return false;
    }
    const Matrix3 inverse = block(m).inverse();
    const Vector3 t = translation(m);
    c.error_by_rows(0, block(out), inverse);
    const Vector3 turned = -inverse * t;
    for (int i = 0; i < 3; ++i) {
        const Quad unit = largest(inverse.row(i).transpose().cwiseProduct(t));
        c.error(1, out.m[i][3], turned(i), unit);
    }
    return true;
}

bool invert_placement(Case &c)
{
    return invert_affine(c, scaled_rotation(c.random));
}

bool invert_conditioned(Case &c)
{
    return invert_affine(c, conditioned_block(c.random));
}

bool invert_general(Case &c, const KXM4 &m)
{
    c.given(m);
    KXM4 out;
    if (KXM4Inverse(&m, &out) != 0) {
        return false;
    }
    const Matrix4 inverse = wide(m).inverse();
    c.error(0, wide(out), inverse, largest(inverse));
    return true;
}

bool invert_near_unit(Case &c)
{
    KXM4 m;
    for (int i = 0; i < 16; ++i) {
        m.m[i / 4][i % 4] = c.random.uniform(0.25) + (i % 5 == 0 ? 1.0f : 0.0f);
    }
    return invert_general(c, m);
}

bool invert_conditioned_of_four(Case &c)
{
    const Eigen::Matrix4d first = rotation_of_four(c.random), second = rotation_of_four(c.random);
    Eigen::Vector4d scale;
    for (double &s : scale) {
        s = double(c.random.spread(-3, 3));
    }
    return invert_general(c, single((first * scale.asDiagonal() * second).eval()));
}

bool invert_of_three(Case &c, const KXM3 &m)
{
    c.given(m);
    KXM3 out;
    if (KXM3Inverse(&m, &out) != 0) {
        return false;
    }
    c.error_by_rows(0, wide(out), Matrix3(wide(m).inverse()));
    return true;
}

bool invert_placement_in_plane(Case &c)
{
    const Eigen::Vector2d scale = scales(c.random, -4, 4).head<2>();
    return invert_of_three(
        c, placed_in_plane(c.random, rotation_of_plane(c.random) * scale.asDiagonal()));
}

bool invert_conditioned_of_three(Case &c)
{
    return invert_of_three(c, single(conditioned_block(c.random)));
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

Experiments inverses()
{
    const char *const placement = "rotation, scales ±2^[-4, 4), translation in [-1000, 1000]";
    const std::vector<Result> affine_results = {{"block", "the largest element of its row"},
                                                {"translation", "the largest product in its sum"}};
    const std::vector<Result> rows = {{"elements", "the largest element of its row"}};
    const std::vector<Result> all = {{"elements", "the largest element of all"}};
    return {
        {"KXM4Inverse, affine", placement, affine_results, invert_placement},
        {"KXM4Inverse, affine", "blocks of condition 64 at most, translation in [-1000, 1000]",
         affine_results, invert_conditioned},
        {"KXM4Inverse, general", "unit matrix, each element ±0.25", all, invert_near_unit},
        {"KXM4Inverse, general", "any matrix of condition 64 at most", all,
         invert_conditioned_of_four},
        {"KXM3Inverse", placement, rows, invert_placement_in_plane},
        {"KXM3Inverse", "any matrix of condition 64 at most", rows, invert_conditioned_of_three},
    };
}

} // namespace accuracy
