/* Orientation, position and the viewing matrix. */
#include "experiment.h"

namespace accuracy
{
namespace
{

Matrix3 rotation_in_order(const float (&angles)[3], KXRotationOrder order)
{
    static constexpr int axes[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2},
                                       {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    Matrix3 product = Matrix3::Identity();
    for (const int axis : axes[order]) {
        product = (product * rotation_about(axis, angles[axis])).eval();
    }
    return product;
}

bool orient(Case &c, const float (&angles)[3])
{
    const KXRotationOrder order = c.random.below(6);
    c.given(angles, order);
    KXM4 matrix, inverse;
    KXM4Orientation(&matrix, &inverse, angles[0], angles[1], angles[2], order);
    const Matrix3 wanted = rotation_in_order(angles, order);
    c.error_by_rows(0, block(matrix), wanted);
    c.error_by_rows(1, block(inverse), Matrix3(wanted.transpose()));
    return true;
}

bool orient_anyhow(Case &c)
{
    const KXV3 angles = c.random.uniform_vector(pi);
    return orient(c, {angles.x, angles.y, angles.z});
}

bool orient_by_quarters(Case &c)
{
    float angles[3];
    for (float &angle : angles) {
        const int quarters = static_cast<int>(c.random.below(9)) - 4;
        angle =
            c.random.below(2) == 0 ? static_cast<float>(quarters * (pi / 2)) : c.random.uniform(pi);
    }
    return orient(c, angles);
}

KXPosition random_position(Random &random)
{
    const KXV3 place = random.uniform_vector(1000), angles = random.uniform_vector(pi);
    return {place.x, place.y, place.z, angles.x, angles.y, angles.z};
}

bool place(Case &c)
{
    const KXPosition position = random_position(c.random);
    const KXRotationOrder order = c.random.below(6);
    c.given(position, order);
    KXM4 inverse;
    KXM4Position(nullptr, &inverse, &position, order);
    const float angles[3] = {position.rotateX, position.rotateY, position.rotateZ};
    const Vector3 t(position.x, position.y, position.z);
    const Vector3 wanted = -rotation_in_order(angles, order).transpose() * t;
    c.error(0, translation(inverse), wanted, largest(t));
    return true;
}

bool project(Case &c)
{
    const KXPosition position = random_position(c.random);
    const float distance = c.random.between(1, 1000), offset = c.random.uniform(1);
    const float scale = fabsf(c.random.spread(-2, 2));
    if (fabsq(1 - Quad(scale)) <= 1e-5 || fabsf(offset) <= 1e-5f) {
        return false; // Taken as 1 and 0.
    }
    c.given(position, distance, offset, scale);
    KXM4 out;
    KXM4Projection1(&out, &position, distance, offset, scale);

    const float angles[3] = {position.rotateX, position.rotateY, position.rotateZ};
    Matrix4 placed = Matrix4::Identity(), step = Matrix4::Identity();
    placed.topLeftCorner<3, 3>() = rotation_in_order(angles, KX_ORDER_YXZ);
    placed.topRightCorner<3, 1>() = Vector3(position.x, position.y, position.z);
    step(0, 2) = Quad(offset) / distance;
    step(0, 3) = -offset;
    step(1, 1) = scale;
    const Matrix4 wanted = step * placed;
    c.error_by_rows(0, block(out), Matrix3(wanted.topLeftCorner<3, 3>()));
    c.error(1, translation(out), Vector3(wanted.topRightCorner<3, 1>()), largest(placed.col(3)));
    return true;
}

} // namespace

Experiments orientation()
{
    const char *const row = "the largest element of its row";
    const std::vector<Result> both = {{"matrix", row}, {"inverse", row}};
    return {
        {"KXM4Orientation", "angles in [-pi, pi], each order", both, orient_anyhow},
        {"KXM4Orientation", "every other angle the single next to a multiple of pi/2", both,
         orient_by_quarters},
        {"KXM4Position",
         "angles in [-pi, pi], each order, translation in [-1000, 1000]",
         {{"translation of the inverse", "the largest coordinate given"}},
         place},
        {"KXM4Projection1",
         "position as above, distance 1 to 1000, offset in [-1, 1], scale 2^[-2, 2)",
         {{"block", row}, {"translation", "the largest coordinate given"}},
         project},
    };
}

} // namespace accuracy
