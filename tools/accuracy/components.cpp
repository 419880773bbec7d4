/* Transforms read by their columns. */
#include "experiment.h"
#include "transforms.h"

namespace accuracy
{
namespace
{

bool read_components(Case &c)
{
    const Eigen::Vector3d drawn = scales(c.random, -4, 4);
    const Eigen::Vector3d mirrored(drawn.x(), std::fabs(drawn.y()), std::fabs(drawn.z()));
    const Eigen::Matrix3d turned = c.random.rotation() * mirrored.asDiagonal();
    const KXM4 m = affine(turned, c.random.uniform_vector(1000));
    Matrix3 unit = block(m);
    if (fabsq(unit.determinant()) < 2e-6) {
        return false; // Too small for a mirror to be told.
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

Experiments components()
{
    const std::vector<Result> results = {{"scale", itself}, {"angles", "1"}};
    return {
        {"KXM4MatrixComponents", "rotation, scales 2^[-4, 4), the first ±; rotateX in [-1.4, 1.4]",
         results, read_components},
        {"KXM3MatrixComponents", "rotation, scales 2^[-4, 4), the first ±", results,
         read_components_in_plane},
    };
}

} // namespace accuracy
