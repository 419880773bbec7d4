/* Transforms taken apart, composed, and read by their columns. */
#include "experiment.h"

namespace accuracy
{
namespace
{

struct Parts {
    Vector3 scale, shear, angles;
};

/** diag(scale)*H*RX*RY*RZ. */
Parts taken_apart(const Matrix3 &m)
{
    Matrix3 rows = m;
    Parts parts;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < i; ++j) {
            parts.shear(i + j - 1) = rows.row(i).dot(rows.row(j));
            rows.row(i) -= parts.shear(i + j - 1) * rows.row(j);
        }
        parts.scale(i) = sqrtq(rows.row(i).squaredNorm());
        rows.row(i) /= parts.scale(i);
        for (int j = 0; j < i; ++j) {
            parts.shear(i + j - 1) /= parts.scale(i);
        }
    }
    if (rows.determinant() < 0) {
        parts.scale = -parts.scale;
        rows = -rows;
    }
    parts.angles = {atan2q(-rows(1, 2), rows(2, 2)), asinq(rows(0, 2)),
                    atan2q(-rows(0, 1), rows(0, 0))};
    return parts;
}

bool compare_parts(Case &c, const KXComponents &got, const Matrix3 &m)
{
    const Parts parts = taken_apart(m);
    if (fabsq(parts.angles.y()) > clear_of_a_quarter_turn) {
        return false;
    }
    c.error(0, Vector3(got.scaleX, got.scaleY, got.scaleZ), parts.scale);
    const Vector3 shear(got.shearXY, got.shearXZ, got.shearYZ);
    c.error(1, shear, parts.shear, std::max<Quad>(1, largest(parts.shear)));
    c.angle_error(2, got.rotateX, parts.angles.x());
    c.angle_error(2, got.rotateY, parts.angles.y());
    c.angle_error(2, got.rotateZ, parts.angles.z());
    return true;
}

/** diag(scale)*H*R. */
Eigen::Matrix3d sheared_rotation(Random &random)
{
    Eigen::Matrix3d shear = Eigen::Matrix3d::Identity();
    shear(1, 0) = double(random.uniform(1));
    shear(2, 0) = double(random.uniform(1));
    shear(2, 1) = double(random.uniform(1));
    const Eigen::Vector3d scale = scales(random, -4, 4);
    return scale.asDiagonal() * shear * random.rotation();
}

bool decompose(Case &c)
{
    const Eigen::Matrix3d drawn = sheared_rotation(c.random);
    const KXM4 m = affine(drawn, c.random.uniform_vector(1000));
    c.given(m);
    KXComponents parts;
    return KXM4Decompose(&m, &parts) == 0 && compare_parts(c, parts, block(m));
}

bool decompose_in_plane(Case &c)
{
    const Eigen::Vector2d scale = scales(c.random, -4, 4).head<2>();
    Eigen::Matrix2d shear = Eigen::Matrix2d::Identity();
    shear(1, 0) = double(c.random.uniform(1));
    const KXM3 m =
        placed_in_plane(c.random, scale.asDiagonal() * shear * rotation_of_plane(c.random));
    c.given(m);
    KXComponents parts;
    if (KXM3Decompose(&m, &parts) != 0) {
        return false;
    }
    Matrix3 in_space = Matrix3::Identity();
    in_space.topLeftCorner<2, 2>() = wide(m).topLeftCorner<2, 2>();
    return compare_parts(c, parts, in_space);
}

bool find_perspective(Case &c)
{
    const Eigen::Matrix3d drawn = conditioned_block(c.random);
    KXM4 m = affine(drawn, c.random.uniform_vector(10));
    for (int j = 0; j < 3; ++j) {
        m.m[3][j] = c.random.uniform(0.5);
    }
    m.m[3][3] = c.random.spread(-1, 1);
    c.given(m);
    KXComponents parts;
    if (KXM4Decompose(&m, &parts) != 0) {
        return false;
    }
    const Matrix4 normalised = wide(m) / m.m[3][3];
    const Matrix3 inverse = normalised.topLeftCorner<3, 3>().inverse();
    const Vector3 row = normalised.row(3).head<3>().transpose(), t = normalised.col(3).head<3>();
    const Vector3 wanted = inverse * (row - t);
    const float got[3] = {parts.perspectiveX, parts.perspectiveY, parts.perspectiveZ};
    for (int i = 0; i < 3; ++i) {
        const Vector3 factors = inverse.row(i).transpose();
        const Quad unit =
            std::max(largest(factors.cwiseProduct(row)), largest(factors.cwiseProduct(t)));
        c.error(0, got[i], wanted(i), unit);
    }
    return true;
}

KXComponents random_components(Random &random)
{
    const KXV3 scale = random.spread_vector(-4, 4), turn = random.uniform_vector(pi);
    const KXV3 place = random.uniform_vector(1000);
    return {scale.x, scale.y, scale.z, 0,       0, 0, turn.x, turn.y,
            turn.z,  place.x, place.y, place.z, 0, 0, 0,      1};
}

bool compose(Case &c)
{
    const KXComponents parts = random_components(c.random);
    c.given(parts);
    KXM4 out;
    KXM4Compose(&out, &parts);
    const Matrix3 turned = rotation_about(0, parts.rotateX) * rotation_about(1, parts.rotateY);
    const Vector3 scale(parts.scaleX, parts.scaleY, parts.scaleZ);
    c.error_by_rows(0, block(out),
                    Matrix3(scale.asDiagonal() * (turned * rotation_about(2, parts.rotateZ))));
    return true;
}

bool compose_in_plane(Case &c)
{
    const KXComponents parts = random_components(c.random);
    c.given(parts);
    KXM3 out;
    KXM3Compose(&out, &parts);
    const Vector3 scale(parts.scaleX, parts.scaleY, 1);
    const Matrix3 wanted = scale.asDiagonal() * rotation_about(2, parts.rotateZ);
    for (int i = 0; i < 4; ++i) {
        c.error(0, out.m[i / 2][i % 2], wanted(i / 2, i % 2));
    }
    return true;
}

bool read_components(Case &c)
{
    const Eigen::Vector3d drawn = scales(c.random, -4, 4);
    const Eigen::Vector3d mirrored(drawn.x(), std::fabs(drawn.y()), std::fabs(drawn.z()));
    const Eigen::Matrix3d turned = c.random.rotation() * mirrored.asDiagonal();
    const KXM4 m = affine(turned, c.random.uniform_vector(1000));
    Matrix3 unit = block(m);
    if (fabsq(unit.determinant()) < 2e-6) {
        return false; // Too small for a mirror to be detected.
    }
    c.given(m);
    const Quad side = unit.determinant() < 0 ? -1 : 1;
    Vector3 wanted;
    for (int i = 0; i < 3; ++i) {
        wanted(i) = sqrtq(unit.col(i).squaredNorm());
        unit.col(i) /= wanted(i);
    }
    wanted(0) *= side;
    const Quad x = -asinq(unit(1, 2)), y = atan2q(unit(0, 2), unit(2, 2));
    if (fabsq(x) > clear_of_a_quarter_turn) {
        return false;
    }
    const Vector3 row = rotation_about(1, -y).row(0) * unit;
    const Quad z = -atan2q(row(1), side * row(0));

    KXPosition position;
    KXV3 scale;
    KXM4MatrixComponents(&m, &position, &scale);
    c.error(0, wide(scale), wanted);
    c.angle_error(1, position.rotateX, x);
    c.angle_error(1, position.rotateY, y);
    c.angle_error(1, position.rotateZ, z);
    return true;
}

bool read_components_in_plane(Case &c)
{
    const Eigen::Vector2d drawn = scales(c.random, -4, 4).head<2>();
    const Eigen::Vector2d scale(drawn.x(), std::fabs(drawn.y()));
    const KXM3 m = placed_in_plane(c.random, rotation_of_plane(c.random) * scale.asDiagonal());
    c.given(m);
    const Matrix3 e = wide(m);
    const Quad side = scale.x() < 0 ? -1 : 1;
    const Quad first = hypotq(e(0, 0), e(1, 0)), second = hypotq(e(0, 1), e(1, 1));

    KXP2 position;
    float angle, scale_x, scale_y;
    KXM3MatrixComponents(&m, &position, &angle, &scale_x, &scale_y);
    c.error(0, scale_x, side * first);
    c.error(0, scale_y, second);
    c.angle_error(1, angle, -atan2q(e(0, 1) / second, side * e(0, 0) / first));
    return true;
}

} // namespace

Experiments decomposition()
{
    const std::vector<Result> parts = {
        {"scale", itself}, {"shear", "1, or the largest shear"}, {"angles", "1"}};
    const std::vector<Result> components = {{"scale", itself}, {"angles", "1"}};
    return {
        {"KXM4Decompose", "rotation, shears in [-1, 1], scales ±2^[-4, 4); rotateY in [-1.4, 1.4]",
         parts, decompose},
        {"KXM4Decompose",
         "block of condition 64 at most, translation in [-10, 10], m30 to m32 in [-0.5, 0.5], "
         "m33 ±2^[-1, 1)",
         {{"perspective", "the largest product in its sum"}},
         find_perspective},
        {"KXM3Decompose", "rotation, shear in [-1, 1], scales ±2^[-4, 4)", parts,
         decompose_in_plane},
        {"KXM4Compose",
         "angles in [-pi, pi], scales ±2^[-4, 4)",
         {{"block", "the largest element of its row"}},
         compose},
        {"KXM3Compose",
         "angle in [-pi, pi], scales ±2^[-4, 4)",
         {{"block", itself}},
         compose_in_plane},
        {"KXM4MatrixComponents", "rotation, scales 2^[-4, 4), the first ±; rotateX in [-1.4, 1.4]",
         components, read_components},
        {"KXM3MatrixComponents", "rotation, scales 2^[-4, 4), the first ±", components,
         read_components_in_plane},
    };
}

} // namespace accuracy
