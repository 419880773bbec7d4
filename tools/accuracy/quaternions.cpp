/* Quaternions. */
#include "experiment.h"

namespace accuracy
{
namespace
{

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
