/* Every member of the C++ face against its C function, bit for bit. */
#include "kxmaths5.hpp"

#include "support/check.h"
#include "support/inputs.h"

#include <tuple>
#include <utility>
#include <vector>

using namespace kxm;

namespace
{

/* The record that a value is. */
KXP2 *record_of(KXP2 *record)
{
    return record;
}
KXV3 *record_of(KXV3 *record)
{
    return record;
}
KXP4 *record_of(KXP4 *record)
{
    return record;
}
KXQuat *record_of(KXQuat *record)
{
    return record;
}
KXM3 *record_of(KXM3 *record)
{
    return record;
}
KXM4 *record_of(KXM4 *record)
{
    return record;
}
KXPosition *record_of(KXPosition *record)
{
    return record;
}
KXComponents *record_of(KXComponents *record)
{
    return record;
}
KXBox *record_of(KXBox *record)
{
    return record;
}
KXLine *record_of(KXLine *record)
{
    return record;
}
KXRay *record_of(KXRay *record)
{
    return record;
}
KXPlane *record_of(KXPlane *record)
{
    return record;
}

void fill(test::Inputs &inputs, float *value)
{
    *value = inputs.number();
}
void fill(test::Inputs &inputs, order *value)
{
    *value = static_cast<order>(inputs.below(6));
}
void fill(test::Inputs &inputs, unit *value)
{
    *value = static_cast<unit>(inputs.below(10));
}
template <typename Value>
void fill(test::Inputs &inputs, Value *value)
{
    inputs.fill(record_of(value));
}

std::uint32_t comparable(std::uint32_t bits)
{
    return test::is_nan(bits) ? 0x7fc00000U : bits;
}

/** The bits of two results; all NaN are one. */
bool same(double wanted, double got)
{
    return test::bits_as<std::uint64_t>(wanted) == test::bits_as<std::uint64_t>(got) ||
           (wanted != wanted && got != got);
}
bool same(bool wanted, bool got)
{
    return wanted == got;
}
template <typename Wanted, typename Got>
bool same(const Wanted &wanted, const Got &got)
{
    const auto w = test::bits_as<test::Words<Wanted>>(wanted);
    const auto g = test::bits_as<test::Words<Got>>(got);
    static_assert(sizeof w == sizeof g);
    for (std::size_t i = 0; i < w.size(); ++i) {
        if (comparable(w[i]) != comparable(g[i])) {
            return false;
        }
    }
    return true;
}
template <typename Wanted, typename Got>
bool same(const std::optional<Wanted> &wanted, const std::optional<Got> &got)
{
    return wanted.has_value() == got.has_value() && (!wanted || same(*wanted, *got));
}

/** Calls both with the digests' inputs, as many values as they take. */
template <typename... Values, typename Wanted, typename Got>
void compare(const char *label, Wanted wanted, Got got)
{
    test::Inputs inputs(label);
    int differences = 0;
    for (int n = 0; n < 500; ++n) {
        inputs.next_kind();
        std::tuple<Values...> values;
        std::apply([&](Values &...value) { (fill(inputs, &value), ...); }, values);
        differences += !same(std::apply(wanted, values), std::apply(got, values));
    }
    CHECK_MESSAGE(differences == 0, label, ": ", differences, " of 500 differ");
}

/** The result of a C function that writes to its last argument, and its status. */
template <typename Record, typename Function, typename... Arguments>
Record c(Function function, Arguments... arguments)
{
    Record out = {};
    function(arguments..., &out);
    return out;
}
template <typename Record, typename Function, typename... Arguments>
std::optional<Record> c_if(std::int32_t status, Function function, Arguments... arguments)
{
    Record out = {};
    return function(arguments..., &out) == status ? std::optional<Record>(out) : std::nullopt;
}

KXRotationOrder in_c(order o)
{
    return static_cast<KXRotationOrder>(o);
}
KXUnit in_c(unit u)
{
    return static_cast<KXUnit>(u);
}

/** Rounded where the compiler can't merge it with what follows. */
float stored(double value)
{
    const volatile float single = static_cast<float>(value);
    return single;
}

} // namespace

TEST_CASE("vectors")
{
    compare<vec3, vec3>(
        "a + b",
        [](auto a, auto b) { return c<KXV3>([&](KXV3 *v) { KXV3Combine(&a, &b, v, 1, 1); }); },
        [](auto a, auto b) { return a + b; });
    compare<vec3, vec3>(
        "a - b",
        [](auto a, auto b) { return c<KXV3>([&](KXV3 *v) { KXV3Combine(&a, &b, v, 1, -1); }); },
        [](auto a, auto b) { return a - b; });
    compare<vec3, vec3>(
        "a += b", [](auto a, auto b) { return a + b; }, [](auto a, auto b) { return a += b; });
    compare<vec3, vec3>(
        "a -= b", [](auto a, auto b) { return a - b; }, [](auto a, auto b) { return a -= b; });
    compare<vec3>(
        "-v",
        [](auto v) {
            return KXV3{-v.x, -v.y, -v.z};
        },
        [](auto v) { return -v; });
    const auto product = [](const vec3 &v, double s) {
        return KXV3{stored(double(v.x) * s), stored(double(v.y) * s), stored(double(v.z) * s)};
    };
    const auto quotient = [](const vec3 &v, double s) {
        return KXV3{stored(double(v.x) / s), stored(double(v.y) / s), stored(double(v.z) / s)};
    };
    compare<vec3, float>("v * s", product, [](auto v, auto s) { return v * s; });
    compare<vec3, float>("s * v", product, [](auto v, auto s) { return s * v; });
    compare<vec3, float>("v *= s", product, [](auto v, auto s) { return v *= s; });
    compare<vec3, float>(
        "v * double", [&](auto v, auto s) { return product(v, double(s) / 3); },
        [](auto v, auto s) { return v * (double(s) / 3); });
    compare<vec3>(
        "v * int", [&](auto v) { return product(v, 3); }, [](auto v) { return v * 3; });
    compare<vec3, float>("v / s", quotient, [](auto v, auto s) { return v / s; });
    compare<vec3, float>("v /= s", quotient, [](auto v, auto s) { return v /= s; });
    compare<vec3, vec3>(
        "dot", [](auto a, auto b) { return kx_dot(&a, &b); },
        [](auto a, auto b) { return dot(a, b); });
    compare<vec3, vec3>(
        "cross", [](auto a, auto b) { return c<KXV3>(KXV3Cross, &a, &b); },
        [](auto a, auto b) { return cross(a, b); });
    compare<vec3>(
        "length", [](auto v) { return KXV3Length(&v); }, [](auto v) { return v.length(); });
    compare<vec3>(
        "normalised",
        [](auto v) {
            KXV3 out;
            return KXV3Normalise(&v, &out) > double(KX_TOLERANCE) ? std::optional(out)
                                                                  : std::nullopt;
        },
        [](auto v) { return v.normalised(); });
    compare<vec3, float>(
        "with_length",
        [](auto v, auto length) {
            KXV3 out = v;
            KXV3Scale(&out, length);
            return KXV3Length(&v) > double(KX_TOLERANCE) ? std::optional(out) : std::nullopt;
        },
        [](auto v, auto length) { return v.with_length(length); });
    // As long as the tolerance is too short.
    CHECK(!vec3(0, KX_TOLERANCE, 0).normalised());
    CHECK(!vec3(0, KX_TOLERANCE, 0).with_length(5));
    compare<vec3>(
        "perpendicular", [](auto v) { return c<KXV3>(KXV3Perpendicular, &v); },
        [](auto v) { return v.perpendicular(); });
    compare<vec3, vec3, float, float>(
        "combine",
        [](auto a, auto b, auto s, auto t) {
            return c<KXV3>([&](KXV3 *v) { KXV3Combine(&a, &b, v, s, t); });
        },
        [](auto a, auto b, auto s, auto t) { return combine(a, b, s, t); });
    compare<vec3, vec3, float>(
        "lerp", [](auto a, auto b, auto t) { return c<KXV3>(kx_lerp, &a, &b, t); },
        [](auto a, auto b, auto t) { return lerp(a, b, t); });
    compare<vec3, vec3, float>(
        "rotated",
        [](auto v, auto axis, auto angle) {
            KXRotateInPlane(&v, &axis, angle);
            return v;
        },
        [](auto v, auto axis, auto angle) { return v.rotated(axis, angle); });
    // What one operator has rounded stays rounded in the next.
    compare<vec3, vec3, vec3>(
        "cross of a cross",
        [](auto a, auto b, auto d) {
            const KXV3 first = c<KXV3>(KXV3Cross, &a, &b);
            return c<KXV3>(KXV3Cross, &first, &d);
        },
        [](auto a, auto b, auto d) { return cross(cross(a, b), d); });
    compare<vec3, vec3, float>(
        "dot of products",
        [&](auto a, auto b, auto s) {
            const KXV3 first = product(a, double(s) / 3), second = quotient(b, 7.5);
            return kx_dot(&first, &second);
        },
        [](auto a, auto b, auto s) { return dot(a * (double(s) / 3), b / 7.5); });
    compare<vec2, vec2, float>(
        "in the plane",
        [](auto a, auto b, auto s) {
            const float x = stored(double(a.x) * double(s)), y = stored(double(a.y) * double(s));
            return KXP2{stored(double(x) + double(b.x)), stored(double(y) + double(b.y))};
        },
        [](auto a, auto b, auto s) { return a * s - -b; });
}

TEST_CASE("points and polar measures")
{
    compare<point3, point3>(
        "p - q",
        [](auto p, auto q) { return c<KXV3>([&](KXV3 *v) { KXV3Combine(&p, &q, v, 1, -1); }); },
        [](auto p, auto q) { return p - q; });
    compare<point3, vec3>(
        "p + v",
        [](auto p, auto v) { return c<KXV3>([&](KXV3 *o) { KXV3Combine(&p, &v, o, 1, 1); }); },
        [](auto p, auto v) { return p + v; });
    compare<point3, vec3>(
        "p - v",
        [](auto p, auto v) { return c<KXV3>([&](KXV3 *o) { KXV3Combine(&p, &v, o, 1, -1); }); },
        [](auto p, auto v) { return p -= v; });
    compare<point2, vec2, point2>(
        "in the plane",
        [](auto p, auto v, auto q) {
            return KXP2{stored(double(stored(double(p.x) + double(v.x))) - double(q.x)),
                        stored(double(stored(double(p.y) + double(v.y))) - double(q.y))};
        },
        [](auto p, auto v, auto q) { return (p += v) - q; });
    compare<point3, point3>(
        "distance", [](auto p, auto q) { return kx_distance(&p, &q); },
        [](auto p, auto q) { return distance(p, q); });
    compare<point3, point3, float>(
        "lerp", [](auto p, auto q, auto t) { return c<KXP3>(kx_lerp, &p, &q, t); },
        [](auto p, auto q, auto t) { return lerp(p, q, t); });
    compare<point3, vec3, float>(
        "rotated",
        [](auto p, auto axis, auto angle) {
            KXRotateInPlane(&p, &axis, angle);
            return p;
        },
        [](auto p, auto axis, auto angle) { return p.rotated(axis, angle); });
    compare<point4>(
        "divided_by_w", [](auto p) { return c_if<KXP3>(0, kx_divide_by_w, &p); },
        [](auto p) { return p.divided_by_w(); });
    compare<point3, unit, unit>(
        "converted",
        [](auto p, auto from, auto to) {
            KXP3ChangeUnits(in_c(from), in_c(to), &p);
            return p;
        },
        [](auto p, auto from, auto to) { return p.converted(from, to); });
    compare<point4, unit, unit>(
        "converted",
        [](auto p, auto from, auto to) {
            KXP4ChangeUnits(in_c(from), in_c(to), &p);
            return p;
        },
        [](auto p, auto from, auto to) { return p.converted(from, to); });
    compare<float, unit, unit>(
        "converted",
        [](auto f, auto from, auto to) {
            KXChangeUnits(in_c(from), in_c(to), &f);
            return f;
        },
        [](auto f, auto from, auto to) { return converted(f, from, to); });
    compare<float, float, float>(
        "polar", [](auto r, auto e, auto a) { return c<KXP3>(KXREAToPoint, r, e, a); },
        [](auto r, auto e, auto a) { return point3::polar(r, e, a); });
    compare<float, float>(
        "towards", [](auto e, auto a) { return c<KXV3>(KXEAToVector, e, a); },
        [](auto e, auto a) { return vec3::towards(e, a); });
    compare<point3, point3>(
        "polar",
        [](auto p, auto q) {
            KXV3 v;
            KXPointsToREA(&p, &q, &v.x, &v.y, &v.z);
            return v;
        },
        [](auto p, auto q) { return polar(p, q); });
    compare<vec3>(
        "polar",
        [](auto v) {
            KXP2 angles;
            KXVectorToEA(&v, &angles.x, &angles.y);
            return angles;
        },
        [](auto v) { return polar(v); });
    compare<point3, point3>(
        "range", [](auto p, auto q) { return KXRange(&p, &q); },
        [](auto p, auto q) { return range(p, q); });
    compare<point3, point3>(
        "bearing", [](auto p, auto q) { return KXBearing(&p, &q); },
        [](auto p, auto q) { return bearing(p, q); });
}

TEST_CASE("quaternions")
{
    compare<quat, quat>(
        "a * b", [](auto a, auto b) { return c<KXQuat>(kx_quat_product, &a, &b); },
        [](auto a, auto b) { return a *= b; });
    compare<quat, vec3>(
        "q * v", [](auto q, auto v) { return c<KXV3>(kx_quat_rotate, &q, &v); },
        [](auto q, auto v) { return q * v; });
    compare<quat, point3>(
        "q * p", [](auto q, auto p) { return c<KXV3>(kx_quat_rotate, &q, &p); },
        [](auto q, auto p) { return q * p; });
    compare<quat>(
        "conjugate", [](auto q) { return c<KXQuat>(kx_quat_conjugate, &q); },
        [](auto q) { return q.conjugate(); });
    compare<quat>(
        "normalised",
        [](auto q) {
            KXQuat out;
            return kx_quat_normalise(&q, &out) > double(KX_TOLERANCE) ? std::optional(out)
                                                                      : std::nullopt;
        },
        [](auto q) { return q.normalised(); });
    compare<quat, quat, float>(
        "slerp", [](auto a, auto b, auto t) { return c<KXQuat>(kx_quat_slerp, &a, &b, t); },
        [](auto a, auto b, auto t) { return slerp(a, b, t); });
    compare<vec3, float>(
        "about", [](auto axis, auto angle) { return c<KXQuat>(KXGenerateQuat, angle, &axis); },
        [](auto axis, auto angle) { return quat::about(axis, angle); });
    compare<quat>(
        "matrix", [](auto q) { return c<KXM4>(KXQuatToMatrix, &q); },
        [](auto q) { return q.matrix(); });
    compare<mat4>(
        "quaternion", [](auto m) { return c<KXQuat>(KXMatrixToQuat, &m); },
        [](auto m) { return m.quaternion(); });
    CHECK(quat::xyzw(1, 2, 3, 4) == quat::wxyz(4, 1, 2, 3));
    CHECK(quat() == quat::wxyz(1, 0, 0, 0));
}

TEST_CASE("matrices")
{
    const auto multiplied = [](auto a, auto b) { return c<KXM4>(KXM4Mult, &a, &b); };
    compare<mat4, mat4>("a * b", multiplied, [](auto a, auto b) { return a * b; });
    compare<mat4, mat4>("a *= b", multiplied, [](auto a, auto b) { return a *= b; });
    compare<mat4, mat4>("b = a * b", multiplied, [](auto a, auto b) { return b = a * b; });
    compare<mat4, mat4>(
        "a + b", [](auto a, auto b) { return c<KXM4>(KXM4Add, &a, &b); },
        [](auto a, auto b) { return a += b; });
    compare<mat4>(
        "m = inverse", [](auto m) { return c_if<KXM4>(0, KXM4Inverse, &m); },
        [](auto m) {
            const auto inverse = m.inverse();
            m = inverse.value_or(m);
            return inverse ? std::optional(m) : std::nullopt;
        });
    compare<mat4>(
        "transposed", [](auto m) { return c<KXM4>(KXM4Transpose, &m); },
        [](auto m) { return m.transposed(); });
    compare<mat4>(
        "determinant", [](auto m) { return KXM4Determinant(&m); },
        [](auto m) { return m.determinant(); });
    compare<mat4>(
        "is_identity", [](auto m) { return KXM4IsUnit(&m) == 1; },
        [](auto m) { return m.is_identity(); });
    compare<mat4>(
        "is_orthogonal", [](auto m) { return KXM4IsOrthogonal(&m) == 1; },
        [](auto m) { return m.is_orthogonal(); });
    compare<mat4>(
        "decomposed", [](auto m) { return c_if<KXComponents>(0, KXM4Decompose, &m); },
        [](auto m) { return m.decomposed(); });
    compare<components>(
        "matrix", [](auto parts) { return c<KXM4>([&](KXM4 *m) { KXM4Compose(m, &parts); }); },
        [](auto parts) { return parts.matrix(); });
    compare<mat4>(
        "placement",
        [](auto m) {
            std::pair<KXPosition, KXV3> out;
            KXM4MatrixComponents(&m, &out.first, &out.second);
            return std::array<float, 9>{out.first.x,       out.first.y,       out.first.z,
                                        out.first.rotateX, out.first.rotateY, out.first.rotateZ,
                                        out.second.x,      out.second.y,      out.second.z};
        },
        [](auto m) { return m.placement(); });
    compare<mat4, unit, unit>(
        "converted",
        [](auto m, auto from, auto to) {
            KXM4ChangeUnits(in_c(from), in_c(to), &m);
            return m;
        },
        [](auto m, auto from, auto to) { return m.converted(from, to); });
    compare<mat4, point3>(
        "m * p", [](auto m, auto p) { return c<KXP3>(KXM4P3I1, &m, &p); },
        [](auto m, auto p) { return m * p; });
    compare<mat4, vec3>(
        "m * v", [](auto m, auto v) { return c<KXP3>(KXM4P3I0, &m, &v); },
        [](auto m, auto v) { return m * v; });
    compare<mat4, point4>(
        "m * p4", [](auto m, auto p) { return c<KXP4>(KXM4P4, &m, &p); },
        [](auto m, auto p) { return m * p; });

    compare<float, float, float>(
        "scale", [](auto x, auto y, auto z) { return c<KXM4>(KXM4Scale, x, y, z); },
        [](auto x, auto y, auto z) { return mat4::scale(x, y, z); });
    compare<float>(
        "one scale", [](auto s) { return c<KXM4>(KXM4Scale, s, s, s); },
        [](auto s) { return mat4::scale(s); });
    compare<vec3>(
        "translation", [](auto v) { return c<KXM4>(KXM4Translate, v.x, v.y, v.z); },
        mat4::translation);
    compare<float, float>(
        "rotation_x", [](auto cosine, auto sine) { return c<KXM4>(KXM4RotateX2, cosine, sine); },
        [](auto cosine, auto sine) { return mat4::rotation_x(cosine, sine); });
    compare<float, float>(
        "rotation_y", [](auto cosine, auto sine) { return c<KXM4>(KXM4RotateY2, cosine, sine); },
        [](auto cosine, auto sine) { return mat4::rotation_y(cosine, sine); });
    compare<float, float>(
        "rotation_z", [](auto cosine, auto sine) { return c<KXM4>(KXM4RotateZ2, cosine, sine); },
        [](auto cosine, auto sine) { return mat4::rotation_z(cosine, sine); });
    compare<float>(
        "shear_xy", [](auto k) { return c<KXM4>(KXM4ShearXY2, k); }, mat4::shear_xy);
    compare<float>(
        "shear_xz", [](auto k) { return c<KXM4>(KXM4ShearXZ2, k); }, mat4::shear_xz);
    compare<float>(
        "shear_yz", [](auto k) { return c<KXM4>(KXM4ShearYZ2, k); }, mat4::shear_yz);
    const auto oriented = [](float x, float y, float z, order o) {
        KXM4 m;
        KXM4Orientation(&m, nullptr, x, y, z, in_c(o));
        return m;
    };
    compare<float, float, float, order>("rotation", oriented, mat4::rotation);
    compare<float>(
        "rotation_x", [&](auto a) { return oriented(a, 0, 0, order::zyx); },
        [](auto a) { return mat4::rotation_x(a); });
    compare<float>(
        "rotation_y", [&](auto a) { return oriented(0, a, 0, order::zyx); },
        [](auto a) { return mat4::rotation_y(a); });
    compare<float>(
        "rotation_z", [&](auto a) { return oriented(0, 0, a, order::zyx); },
        [](auto a) { return mat4::rotation_z(a); });
    compare<position, order>(
        "matrix",
        [](auto p, auto o) {
            return c<KXM4>([&](KXM4 *m) { KXM4Position(m, nullptr, &p, in_c(o)); });
        },
        [](auto p, auto o) { return p.matrix(o); });
    compare<position, order>(
        "matrices",
        [](auto p, auto o) {
            return c<std::array<KXM4, 2>>(
                [&](std::array<KXM4, 2> *m) { KXM4Position(&(*m)[0], &(*m)[1], &p, in_c(o)); });
        },
        [](auto p, auto o) { return p.matrices(o); });
    compare<position, float, float, float>(
        "viewing",
        [](auto p, auto distance, auto offset, auto scale) {
            return c<KXM4>([&](KXM4 *m) { KXM4Projection1(m, &p, distance, offset, scale); });
        },
        [](auto p, auto distance, auto offset, auto scale) {
            return p.viewing(distance, offset, scale);
        });
}

TEST_CASE("matrices of the plane")
{
    compare<mat3, mat3>(
        "a * b", [](auto a, auto b) { return c<KXM3>(KXM3Mult, &a, &b); },
        [](auto a, auto b) { return a * b; });
    compare<mat3, mat3>(
        "a *= b", [](auto a, auto b) { return c<KXM3>(KXM3Mult, &a, &b); },
        [](auto a, auto b) { return a *= b; });
    compare<mat3, mat3>(
        "a + b", [](auto a, auto b) { return c<KXM3>(KXM3Add, &a, &b); },
        [](auto a, auto b) { return a += b; });
    compare<mat3>(
        "inverse", [](auto m) { return c_if<KXM3>(0, KXM3Inverse, &m); },
        [](auto m) { return m.inverse(); });
    compare<mat3>(
        "transposed", [](auto m) { return c<KXM3>(KXM3Transpose, &m); },
        [](auto m) { return m.transposed(); });
    compare<mat3>(
        "determinant", [](auto m) { return KXM3Determinant(&m); },
        [](auto m) { return m.determinant(); });
    compare<mat3>(
        "is_identity", [](auto m) { return KXM3IsUnit(&m) == 1; },
        [](auto m) { return m.is_identity(); });
    compare<mat3>(
        "decomposed", [](auto m) { return c_if<KXComponents>(0, KXM3Decompose, &m); },
        [](auto m) { return m.decomposed(); });
    compare<components>(
        "plane_matrix",
        [](auto parts) { return c<KXM3>([&](KXM3 *m) { KXM3Compose(m, &parts); }); },
        [](auto parts) { return parts.plane_matrix(); });
    compare<mat3>(
        "placement",
        [](auto m) {
            KXP2 at;
            float angle, x, y;
            KXM3MatrixComponents(&m, &at, &angle, &x, &y);
            return std::array<float, 5>{at.x, at.y, angle, x, y};
        },
        [](auto m) { return m.placement(); });
    compare<mat3, point2>(
        "m * p", [](auto m, auto p) { return c<KXP2>(KXM3P2I1, &m, &p); },
        [](auto m, auto p) { return m * p; });
    compare<mat3, vec2>(
        "m * v", [](auto m, auto v) { return c<KXP2>(KXM3P2I0, &m, &v); },
        [](auto m, auto v) { return m * v; });
    compare<float, float>(
        "scale", [](auto x, auto y) { return c<KXM3>(KXM3Scale, x, y); }, mat3::scale);
    compare<vec2>(
        "translation", [](auto v) { return c<KXM3>(KXM3Translate, v.x, v.y); }, mat3::translation);
    compare<float, float>(
        "rotation", [](auto cosine, auto sine) { return c<KXM3>(KXM3Rotate2, cosine, sine); },
        [](auto cosine, auto sine) { return mat3::rotation(cosine, sine); });
    CHECK(mat3::rotation(radians(90)) * point2(1, 0) == point2(0, 1));
}

TEST_CASE("boxes, planes, lines and rays")
{
    compare<mat4, box>(
        "m * box", [](auto m, auto b) { return c<KXBox>(KXTransformBox, &b, &m); },
        [](auto m, auto b) { return m * b; });
    compare<box, point3>(
        "include",
        [](auto b, auto p) {
            const bool grew = KXPutPointInBox(&p, &b) == 1;
            return grew ? std::optional<KXBox>(b) : std::nullopt;
        },
        [](auto b, auto p) { return b.include(p) ? std::optional(b) : std::nullopt; });
    compare<box, box>(
        "include",
        [](auto a, auto b) {
            KXCombineBoxes(&a, &b);
            return a;
        },
        [](auto a, auto b) {
            a.include(b);
            return a;
        });
    compare<box>(
        "middle", [](auto b) { return c<KXP3>(KXBoxMidPoint, &b); },
        [](auto b) { return b.middle(); });
    compare<box>(
        "diagonal", [](auto b) { return c<KXV3>(KXBoxDiagonal, &b); },
        [](auto b) { return b.diagonal(); });
    compare<box>(
        "is_valid", [](auto b) { return KXIsValidBox(&b) == 1; },
        [](auto b) { return b.is_valid(); });
    compare<box, unit, unit>(
        "converted",
        [](auto b, auto from, auto to) {
            KXBoxChangeUnits(in_c(from), in_c(to), &b);
            return b;
        },
        [](auto b, auto from, auto to) { return b.converted(from, to); });
    compare<box>(
        "fit",
        [](auto b) {
            std::array<KXM4, 2> m;
            return kx_fit_mesh(&b, &m[0], &m[1]) == 0 ? std::optional(m) : std::nullopt;
        },
        [](auto b) { return b.fit(); });
    compare<box>(
        "corners", [](auto b) { return static_cast<KXBox>(b); },
        [](auto b) { return box(b.minimum(), b.maximum()); });

    compare<point3, point3, point3>(
        "through",
        [](auto p, auto q, auto r) { return c_if<KXPlane>(0, KXPlaneEquation, &p, &q, &r); },
        [](auto p, auto q, auto r) { return plane::through(p, q, r); });
    compare<plane, unit, unit>(
        "converted",
        [](auto p, auto from, auto to) {
            KXPlaneChangeUnits(in_c(from), in_c(to), &p);
            return p;
        },
        [](auto p, auto from, auto to) { return p.converted(from, to); });

    compare<mat4, line>(
        "m * line", [](auto m, auto l) { return c<KXLine>(KXTransformLine, &l, &m); },
        [](auto m, auto l) { return m * l; });
    compare<line, box>(
        "hit", [](auto l, auto b) { return c_if<KXP3>(1, KXLineIxBox, &l, &b); },
        [](auto l, auto b) { return l.hit(b); });
    compare<line, box>(
        "meets", [](auto l, auto b) { return KXLineIxBox(&l, &b, nullptr) == 1; },
        [](auto l, auto b) { return l.meets(b); });
    compare<line, point3>(
        "parameter", [](auto l, auto p) { return kx_line_parameter(&l, &p); },
        [](auto l, auto p) { return l.parameter(p); });
    compare<line>(
        "ends", [](auto l) { return static_cast<KXLine>(l); },
        [](auto l) { return line(l.start(), l.end()); });

    compare<mat4, ray>(
        "m * ray", [](auto m, auto r) { return c<KXRay>(KXTransformRay, &r, &m); },
        [](auto m, auto r) { return m * r; });
    compare<ray, box>(
        "hit", [](auto r, auto b) { return c_if<KXP3>(1, KXRayIxBox, &r, &b); },
        [](auto r, auto b) { return r.hit(b); });
    compare<ray, box>(
        "meets", [](auto r, auto b) { return KXRayIxBox(&r, &b, nullptr) == 1; },
        [](auto r, auto b) { return r.meets(b); });
    compare<ray, point3>(
        "parameter", [](auto r, auto p) { return kx_ray_parameter(&r, &p); },
        [](auto r, auto p) { return r.parameter(p); });
    compare<ray, point3>(
        "distance", [](auto r, auto p) { return KXRayPointDistance(&r, &p); },
        [](auto r, auto p) { return r.distance(p); });
    compare<ray, float>(
        "at",
        [](auto r, auto t) {
            const KXP3 o = r.origin();
            const KXV3 d = r.direction();
            return c<KXP3>([&](KXP3 *p) { KXV3Combine(&o, &d, p, 1, t); });
        },
        [](auto r, auto t) { return r.at(t); });
}

TEST_CASE("triangles")
{
    test::Inputs inputs("triangles");
    int hits = 0;
    for (int n = 0; n < 3000; ++n) {
        inputs.next_kind();
        KXP3 records[4];
        KXTriangle record;
        inputs.fill(records, &record);
        const point3 vertices[] = {point3(records[0]), point3(records[1]), point3(records[2]),
                                   point3(records[3])};
        ray r;
        line l;
        fill(inputs, &r);
        fill(inputs, &l);
        const triangle as_given(record);
        const auto hit = r.hit(as_given, vertices);
        hits += hit.has_value();
        CHECK(same(c_if<KXP3>(1, KXRayIxTriangle, &r, &record, records), hit));
        CHECK(
            same(c_if<KXP3>(1, KXLineIxTriangle, &l, &record, records), l.hit(as_given, vertices)));
        const auto made =
            triangle::of(vertices, as_given.vertex(0), as_given.vertex(1), as_given.vertex(2));
        CHECK(same(c_if<KXTriangle>(0, kx_triangle, records, record.corner[0].vertex,
                                    record.corner[1].vertex, record.corner[2].vertex),
                   made));
        std::array<float, 3> weights = {};
        const bool has_area = kx_barycentric(&record, records, &records[3], weights.data()) == 0;
        CHECK(same(has_area ? std::optional(weights) : std::nullopt,
                   as_given.barycentric(vertices, vertices[3])));
        CHECK(same(record.plane, as_given.plane()));
    }
    CHECK(hits > 20);
    CHECK(!ray({0, 0, 1}, {0, 0, -1}).hit(triangle(), nullptr));
}

TEST_CASE("cameras")
{
    compare<point3, point3, vec3>(
        "look_at",
        [](auto eye, auto target, auto up) {
            std::array<KXM4, 2> m;
            kx_look_at(&eye, &target, &up, &m[0], &m[1]);
            return m;
        },
        [](auto eye, auto target, auto up) {
            const viewpoint from = look_at(eye, target, up);
            return std::array<KXM4, 2>{from.placement, from.view};
        });
    compare<point3, point3>(
        "look_at's status",
        [](auto eye, auto target) {
            const KXV3 up = {0, 1, 0};
            return kx_look_at(&eye, &target, &up, nullptr, nullptr) == 1;
        },
        [](auto eye, auto target) { return look_at(eye, target).is_chosen; });
    compare<float, float, float, float>(
        "perspective",
        [](auto f, auto a, auto n, auto d) {
            return c<KXM4>(kx_perspective, f, a, n, d, KX_DEPTH_1_TO_0);
        },
        [](auto f, auto a, auto n, auto d) { return perspective(f, a, n, d, depth::one_to_zero); });
    compare<float, float, float, float>(
        "orthographic",
        [](auto l, auto r, auto n, auto d) {
            return c<KXM4>(kx_orthographic, l, r, -1.0f, 2.0f, n, d, KX_DEPTH_MINUS_1_TO_1);
        },
        [](auto l, auto r, auto n, auto d) {
            return orthographic(l, r, -1.0f, 2.0f, n, d, depth::minus_one_to_one);
        });
    compare<mat4, mat4, float, float, float, float>(
        "screen_to_ray",
        [](auto projection, auto placement, auto x, auto y, auto w, auto h) {
            return c<KXRay>(kx_screen_to_ray, &projection, &placement, x, y, w, h);
        },
        screen_to_ray);
    CHECK(radians(180) == 3.14159274f);
    CHECK(degrees(1.5707963267948966) == doctest::Approx(90.0));
}

namespace
{

/** An array form of C, of the face by pointer and count, and of the face by range. */
template <typename Matrix, typename Element, typename Form>
void check_transform(const char *label, Form form)
{
    test::Inputs inputs(label);
    Matrix m;
    fill(inputs, &m);
    std::vector<Element> in(37), wanted(in), got(in);
    for (Element &element : in) {
        fill(inputs, &element);
    }
    const auto check = [&] {
        for (std::size_t i = 0; i < in.size(); ++i) {
            CHECK_MESSAGE(same(wanted[i], got[i]), label, " ", i);
        }
        got = in;
    };
    form(&m, 37, in.data(), wanted.data());
    transform(m, in.data(), in.size(), got.data());
    check();
    transform(m, got.data(), got.size());
    check();
#if __cplusplus >= 202002L
    const std::span<const Element> read_only = in;
    transform(m, read_only, got);
    check();
    transform(m, got);
    check();
#endif
    transform(m, static_cast<Element *>(nullptr), 0);
}

template <typename Element, typename Form>
void check_convert(const char *label, Form form)
{
    test::Inputs inputs(label);
    std::vector<Element> wanted(11);
    for (Element &element : wanted) {
        fill(inputs, &element);
    }
    std::vector<Element> got = wanted, by_range = wanted;
    form(KX_UNIT_METRE, KX_UNIT_FOOT, 11, wanted.data());
    convert(got.data(), got.size(), unit::metre, unit::foot);
#if __cplusplus >= 202002L
    convert(by_range, unit::metre, unit::foot);
#else
    by_range = got;
#endif
    for (std::size_t i = 0; i < got.size(); ++i) {
        CHECK_MESSAGE(same(wanted[i], got[i]), label, " ", i);
        CHECK_MESSAGE(same(wanted[i], by_range[i]), label, " ", i);
    }
}

} // namespace

TEST_CASE("arrays")
{
    check_transform<mat4, point3>("KXM4NP3I1", KXM4NP3I1);
    check_transform<mat4, vec3>("KXM4NP3I0", KXM4NP3I0);
    check_transform<mat4, point4>("KXM4NP4", KXM4NP4);
    check_transform<mat3, point2>("KXM3NP2I1", KXM3NP2I1);
    check_transform<mat3, vec2>("KXM3NP2I0", KXM3NP2I0);
    check_convert<point3>("KXP3ChangeNUnits", KXP3ChangeNUnits);
    check_convert<point4>("KXP4ChangeNUnits", KXP4ChangeNUnits);
    check_convert<plane>("KXPlaneChangeNUnits", KXPlaneChangeNUnits);

    // More than a count of the C functions holds: the parts follow one another and end where the
    // array does.
    std::size_t end = 0;
    kxm::detail::in_parts(static_cast<std::size_t>(0x200000005ULL),
                          [&](std::size_t begin, std::uint32_t part) {
                              CHECK(begin == end);
                              end += part;
                          });
    CHECK(end == static_cast<std::size_t>(0x200000005ULL));

    const point3 points[] = {{1, 5, -2}, {0, 7, 3}, {4, 6, 1}};
    CHECK(box::around(points, 3) == box({0, 5, -2}, {4, 7, 3}));
    CHECK(!box::around(points, 0).is_valid());
    const point3 far_away(1e30f, -1e30f, 0);
    CHECK(box::around(&far_away, 1) == box(far_away, far_away));
}

namespace
{

/* What must not compile. */
template <typename A, typename B, typename = void>
struct Adds : std::false_type {
};
template <typename A, typename B>
struct Adds<A, B, std::void_t<decltype(std::declval<A>() + std::declval<B>())>> : std::true_type {
};
static_assert(Adds<vec3, vec3>::value && Adds<point3, vec3>::value && Adds<vec3, point3>::value);
static_assert(!Adds<point3, point3>::value && !Adds<vec3, float>::value);
static_assert(!std::is_constructible_v<quat, float, float, float, float>);
static_assert(!std::is_convertible_v<point3, vec3> && !std::is_convertible_v<vec3, point3>);
static_assert(std::is_convertible_v<mat4 *, KXM4 *> && std::is_convertible_v<point3 *, KXP3 *>);

/* What a compiler can do ahead. */
static_assert(cross(vec3(1, 0, 0), vec3(0, 1, 0)) == vec3(0, 0, 1));
static_assert(point3(3, 4, 5) - point3(1, 1, 1) == 0.5 * vec3(4, 6, 8));
static_assert(mat4()(3, 3) == 1.0f && mat4()(0, 3) == 0.0f);

struct WithMembers {
    double x, y, z;
};

} // namespace

TEST_CASE("other libraries' types")
{
    const std::array<double, 3> by_index = {1, 2, 3};
    const float plain[] = {1, 2, 3};
    CHECK(vec3(by_index) == vec3(1, 2, 3));
    CHECK(point3(plain) == point3(1, 2, 3));
    CHECK(vec3(WithMembers{1, 2, 3}) == vec3(1, 2, 3));
    CHECK(point2(by_index) == point2(1, 2));
    CHECK(vec3(1, 2, 3).to<WithMembers>().z == 3.0);
    CHECK(point3(1, 2, 3).to<std::array<float, 3>>()[1] == 2.0f);

    std::array<float, 16> floats = {};
    const mat4 m = mat4::translation({7, 8, 9});
    m.to_columns(floats.data());
    CHECK(floats[12] == 7.0f);
    CHECK(mat4::from_columns(floats.data()) == m);
    m.to_rows(floats.data());
    CHECK(floats[3] == 7.0f);
    CHECK(mat4::from_rows(floats.data()) == m);
    CHECK(mat4::from_rows(floats.data()) != mat4::from_columns(floats.data()));
    const mat3 n(1, 2, 3, 4, 5, 6, 7, 8, 9);
    n.to_columns(floats.data());
    CHECK(floats[1] == 4.0f);
    CHECK(mat3::from_columns(floats.data()) == n);
}

TEST_CASE("what {} makes")
{
    CHECK(vec3{} == vec3(0, 0, 0));
    CHECK(point4{} == point4(point3{}));
    CHECK(point4(vec3{}).w == 0.0f);
    CHECK(mat4{}.is_identity());
    CHECK(mat3{}.is_identity());
    CHECK(quat{} * vec3(1, 2, 3) == vec3(1, 2, 3));
    CHECK(position{}.matrix(order::xyz) == mat4{});
    CHECK(components{}.matrix() == mat4{});
    box b;
    CHECK(!b.is_valid());
    CHECK(b.include(point3(1, 2, 3)));
    CHECK(b == box({1, 2, 3}, {1, 2, 3}));
}
