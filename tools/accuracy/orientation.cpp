/* Orientation, position and the viewing matrix; quaternions. */
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

bool generate(Case &c)
{
    const float angle = c.random.uniform(6.28);
    const KXV3 axis = c.random.spread_vector(-16, 16);
    c.given(angle, axis);
    KXQuat out;
    KXGenerateQuat(angle, &axis, &out);
    Quad sine, cosine;
    sincosq(Quad(angle) / 2, &sine, &cosine);
    c.error(0, Vector3(out.x, out.y, out.z), Vector3(wide(axis) * (sine / length(wide(axis)))));
    c.error(1, out.w, cosine);
    return true;
}

bool to_matrix(Case &c)
{
    const KXV3 v = c.random.uniform_vector(1);
    const KXQuat q = {v.x, v.y, v.z, c.random.uniform(1)};
    c.given(q);
    KXM4 out;
    KXQuatToMatrix(&q, &out);
    // w*w + v*v for 1, so that the quaternion needs no length.
    const Vector3 n = wide(v);
    const Quad w = q.w, square = w * w + n.squaredNorm();
    Matrix3 cross;
    cross << 0, -n.z(), n.y(), n.z(), 0, -n.x(), -n.y(), n.x(), 0;
    const Matrix3 twice = (w * cross + cross * cross) * (2 / square);
    c.error_by_rows(0, block(out), Matrix3(Matrix3::Identity() + twice));
    return true;
}

bool from_matrix(Case &c)
{
    const KXM4 m = affine(c.random.rotation(), {});
    c.given(m);
    KXQuat out;
    KXMatrixToQuat(&m, &out);

    const Matrix3 e = block(m);
    Vector4 wanted;
    if (e.trace() > 0) {
        const Quad s = sqrtq(e.trace() + 1);
        wanted << e(2, 1) - e(1, 2), e(0, 2) - e(2, 0), e(1, 0) - e(0, 1), s * s;
        wanted /= 2 * s;
    } else {
        int i;
        e.diagonal().maxCoeff(&i);
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        const Quad s = sqrtq(e(i, i) - e(j, j) - e(k, k) + 1);
        wanted(i) = s * s;
        wanted(j) = e(j, i) + e(i, j);
        wanted(k) = e(k, i) + e(i, k);
        wanted(3) = e(k, j) - e(j, k);
        wanted /= 2 * s;
    }
    c.error(0, Vector4(out.x, out.y, out.z, out.w), wanted);
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

Experiments quaternions()
{
    return {
        {"KXGenerateQuat",
         "angle in [-6.28, 6.28], axis ±2^[-16, 16)",
         {{"x, y, z", itself}, {"w", itself}},
         generate},
        {"KXQuatToMatrix",
         "x, y, z, w in [-1, 1]",
         {{"block", "the largest element of its row"}},
         to_matrix},
        {"KXMatrixToQuat", "rotations, rounded to singles", {{"x, y, z, w", itself}}, from_matrix},
    };
}

} // namespace accuracy
