/* Every member of the C++ face against its C function, bit for bit. */
#include "kxmaths5.hpp"

#include "support/inputs.h"
#include "support/rows.h"

#include <functional>
#include <tuple>
#include <utility>
#include <vector>

using namespace kxm;

namespace
{

template <typename Value>
void fill(test::Inputs &inputs, Value *value)
{
    if constexpr (std::is_enum_v<Value>) {
        constexpr bool is_order = std::is_same_v<Value, order>,
                       is_unit = std::is_same_v<Value, unit>;
        *value = static_cast<Value>(inputs.below(is_order ? 6 : is_unit ? 10 : 3));
    } else if constexpr (std::is_convertible_v<Value *, KXM3 *>) {
        inputs.fill(static_cast<KXM3 *>(value));
    } else if constexpr (std::is_convertible_v<Value *, KXM4 *>) {
        inputs.fill(static_cast<KXM4 *>(value));
    } else if constexpr (std::is_convertible_v<Value *, KXBox *>) {
        inputs.fill(static_cast<KXBox *>(value));
    } else {
        inputs.fill(value);
    }
}

/** The words by which values are compared; all NaN are one, whatever their sign and payload. */
test::WordList comparable(test::WordList words)
{
    for (std::uint32_t &word : words) {
        word = test::is_nan(word) ? 0x7fc00000U : word;
    }
    return words;
}
test::WordList comparable(bool value)
{
    return {value};
}
test::WordList comparable(double value)
{
    test::WordList words;
    test::append(&words, value == value ? value : double(test::not_a_number));
    return words;
}
template <typename Value>
test::WordList comparable(const Value &value)
{
    test::WordList words;
    test::append(&words, value);
    return comparable(words);
}
template <typename Value>
std::optional<test::WordList> comparable(const std::optional<Value> &value)
{
    return value ? std::optional(comparable(*value)) : std::nullopt;
}
template <typename Wanted, typename Got>
bool same(const Wanted &wanted, const Got &got)
{
    return comparable(wanted) == comparable(got);
}

template <typename Parameter>
Parameter as_argument(std::remove_const_t<std::remove_pointer_t<Parameter>> &record)
{
    if constexpr (std::is_pointer_v<Parameter>) {
        return &record;
    } else {
        return record;
    }
}

/**
 * What a function of C gives of these values: its outputs, where it has any. With values for all
 * parameters, it reads them too. They count with this status alone, or a length above the
 * tolerance.
 */
template <typename Result, typename... Parameters, typename... Values>
auto given(Result (*function)(Parameters...), std::int32_t status, const Values &...values)
{
    test::WordList inputs, outputs;
    (test::append(&inputs, values), ...);
    std::size_t next = 0;
    const auto give = [&](auto &record, bool is_given) {
        for (std::size_t i = 0; is_given && i < sizeof record; i += 4) {
            std::memcpy(reinterpret_cast<char *>(&record) + i, &inputs.at(next++), 4);
        }
    };
    const auto take = [&](const auto &record, bool is_written) {
        if (is_written) {
            test::append(&outputs, record);
        }
    };
    std::conditional_t<std::is_void_v<Result>, int, Result> result = 0;
    const auto call = [&](auto &...record) {
        constexpr bool outputs_are_read = sizeof...(Values) == sizeof...(Parameters);
        (give(record, outputs_are_read || !test::is_output<Parameters>), ...);
        if constexpr (std::is_void_v<Result>) {
            function(as_argument<Parameters>(record)...);
        } else {
            result = function(as_argument<Parameters>(record)...);
        }
        (take(record, test::is_output<Parameters>), ...);
    };
    std::tuple<std::remove_const_t<std::remove_pointer_t<Parameters>>...> records = {};
    std::apply(call, records);
    if constexpr ((test::is_output<Parameters> || ...)) {
        const double number = double(result);
        const bool is_length = std::is_same_v<Result, double>;
        const bool counts = is_length ? number > double(KX_TOLERANCE) : number == status;
        return counts ? std::optional(outputs) : std::nullopt;
    } else if constexpr (std::is_same_v<Result, std::int32_t>) {
        return result == 1;
    } else {
        return result;
    }
}

template <typename Wanted, typename Result, typename... Values>
void compare_calls(const char *label, Wanted wanted, const std::function<Result(Values...)> &got)
{
    test::Inputs inputs(label);
    int differences = 0;
    for (int n = 0; n < 500; ++n) {
        inputs.next_kind();
        std::tuple<std::decay_t<Values>...> values;
        std::apply([&](auto &...value) { (fill(inputs, &value), ...); }, values);
        differences += !same(std::apply(wanted, values), std::apply(got, values));
    }
    CHECK_MESSAGE(differences == 0, label, ": ", differences, " of 500 differ");
}

/** Calls both with the digests' inputs, as many values as the face takes, of its types. */
template <typename Wanted, typename Got>
void compare(const char *label, Wanted wanted, Got got)
{
    compare_calls(label, wanted, std::function(got));
}
/** With a function of C, which takes the same values in its order, and has a result only with this
 * status. */
template <typename Result, typename... Parameters, typename Got>
void compare(const char *label, Result (*wanted)(Parameters...), Got got, std::int32_t status = 0)
{
    const auto of_values = [=](const auto &...values) { return given(wanted, status, values...); };
    compare_calls(label, of_values, std::function(got));
}

/** Rounded where the compiler can't merge it with what follows. */
float stored(double value)
{
    const volatile float single = static_cast<float>(value);
    return single;
}

/** With any vectors or points. */
constexpr auto combined = [](auto a, auto b, float s, float t) {
    KXV3 out;
    KXV3Combine(&a, &b, &out, s, t);
    return out;
};
constexpr auto sum = [](auto a, auto b) { return combined(a, b, 1, 1); };
constexpr auto difference = [](auto a, auto b) { return combined(a, b, 1, -1); };
constexpr auto product = [](KXV3 v, double s) {
    return KXV3{stored(double(v.x) * s), stored(double(v.y) * s), stored(double(v.z) * s)};
};
constexpr auto quotient = [](KXV3 v, double s) {
    return KXV3{stored(double(v.x) / s), stored(double(v.y) / s), stored(double(v.z) / s)};
};
constexpr auto oriented = [](float x, float y, float z, order o) {
    KXM4 m;
    KXM4Orientation(&m, nullptr, x, y, z, KXRotationOrder(o));
    return m;
};

/** The first two components of what each operator of vectors and points gives. */
template <typename Vector, typename Point>
std::array<KXP2, 15> operators(Vector v, Vector w, Point p, Point q, float s)
{
    const auto flat = [](auto result) { return KXP2{result.x, result.y}; };
    Vector sum = v, less = v, longer = v, shorter = v;
    Point there = p, back = p;
    return {flat(v + w),       flat(v - w),        flat(-v),
            flat(v * s),       flat(s * v),        flat(v / s),
            flat(p + v),       flat(v + p),        flat(p - v),
            flat(p - q),       flat(sum += w),     flat(less -= w),
            flat(longer *= s), flat(shorter /= s), flat((there += v) - (back -= v))};
}

template <typename Value>
void check_equality()
{
    for (std::size_t i = 0; i < sizeof(Value) / 4; ++i) {
        Value value, other;
        reinterpret_cast<float *>(&value)[i] = 0;
        for (const float number : {-0.0f, 1.5f, test::not_a_number}) {
            reinterpret_cast<float *>(&other)[i] = number;
            CAPTURE(i);
            CHECK((value == other) == (number == 0));
            CHECK((value != other) == (number != 0));
        }
    }
}
template <typename... Values>
void check_equality_of_each()
{
    (check_equality<Values>(), ...);
}

} // namespace

TEST_CASE("equality: every number counts, signs of zero don't, and a NaN equals nothing")
{
    check_equality_of_each<vec2, point2, vec3, point3, point4, quat, mat3, mat4, position, box,
                           plane, line, ray>();
}

TEST_CASE("vectors")
{
    compare("a + b", sum, [](vec3 a, vec3 b) { return a + b; });
    compare("a - b", difference, [](vec3 a, vec3 b) { return a - b; });
    compare("a += b", sum, [](vec3 a, vec3 b) { return a += b; });
    compare("a -= b", difference, [](vec3 a, vec3 b) { return a -= b; });
    const auto negated = [](KXV3 v) { return KXV3{-v.x, -v.y, -v.z}; };
    compare("-v", negated, [](vec3 v) { return -v; });
    compare("v * s", product, [](vec3 v, float s) { return v * s; });
    compare("s * v", product, [](vec3 v, float s) { return s * v; });
    compare("v *= s", product, [](vec3 v, float s) { return v *= s; });
    compare(
        "v * double", [](auto v, auto s) { return product(v, double(s) / 3); },
        [](vec3 v, float s) { return v * (double(s) / 3); });
    compare(
        "v * int", [](auto v) { return product(v, 3); }, [](vec3 v) { return v * 3; });
    compare("v / s", quotient, [](vec3 v, float s) { return v / s; });
    compare("v /= s", quotient, [](vec3 v, float s) { return v /= s; });
    compare("dot", kx_dot, [](vec3 a, vec3 b) { return dot(a, b); });
    compare("cross", KXV3Cross, [](vec3 a, vec3 b) { return cross(a, b); });
    compare("length", KXV3Length, [](vec3 v) { return v.length(); });
    compare("normalised", KXV3Normalise, [](vec3 v) { return v.normalised(); });
    compare(
        "with_length",
        [](auto v, auto length) {
            KXV3 out = v;
            KXV3Scale(&out, length);
            const bool is_long = KXV3Length(&v) > double(KX_TOLERANCE);
            return is_long ? std::optional(out) : std::nullopt;
        },
        [](vec3 v, float length) { return v.with_length(length); });
    // As long as the tolerance is too short, and a NaN is no length.
    for (const float y : {KX_TOLERANCE, test::not_a_number}) {
        CHECK(!vec3(0, y, 0).normalised());
        CHECK(!vec3(0, y, 0).with_length(5));
    }
    compare("perpendicular", KXV3Perpendicular, [](vec3 v) { return v.perpendicular(); });
    compare("combine", KXV3Combine,
            [](vec3 a, vec3 b, float s, float t) { return combine(a, b, s, t); });
    compare("lerp", kx_lerp, [](vec3 a, vec3 b, float t) { return lerp(a, b, t); });
    compare("rotated", KXRotateInPlane,
            [](vec3 v, vec3 axis, float angle) { return v.rotated(axis, angle); });
    // What one operator has rounded stays rounded in the next.
    compare(
        "cross of a cross",
        [](auto a, auto b, auto d) {
            KXV3 first, second;
            KXV3Cross(&a, &b, &first);
            KXV3Cross(&first, &d, &second);
            return second;
        },
        [](vec3 a, vec3 b, vec3 d) { return cross(cross(a, b), d); });
    compare(
        "dot of products",
        [](auto a, auto b, auto s) {
            const KXV3 first = product(a, double(s) / 3), second = quotient(b, 0.7);
            return kx_dot(&first, &second);
        },
        [](vec3 a, vec3 b, float s) { return dot(a * (double(s) / 3), b / 0.7); });
    compare(
        "in the plane",
        [](auto a, auto b, auto s) {
            const float x = stored(double(a.x) * double(s)), y = stored(double(a.y) * double(s));
            return KXP2{stored(double(x) + double(b.x)), stored(double(y) + double(b.y))};
        },
        [](vec2 a, vec2 b, float s) { return a * s - -b; });
}

TEST_CASE("points and polar measures")
{
    compare("p - q", difference, [](point3 p, point3 q) { return p - q; });
    compare("v + p", sum, [](vec3 v, point3 p) { return v + p; });
    compare("p += v", sum, [](point3 p, vec3 v) { return p += v; });
    compare("p - v", difference, [](point3 p, vec3 v) { return p -= v; });
    compare(
        "in the plane as in space",
        [](auto v, auto w, auto p, auto q, auto s) {
            return operators(vec3(v.x, v.y, 0), vec3(w.x, w.y, 0), point3(p.x, p.y, 0),
                             point3(q.x, q.y, 0), s);
        },
        operators<vec2, point2>);
    compare("distance", kx_distance, [](point3 p, point3 q) { return distance(p, q); });
    compare("lerp", kx_lerp, [](point3 p, point3 q, float t) { return lerp(p, q, t); });
    compare("rotated", KXRotateInPlane,
            [](point3 p, vec3 axis, float angle) { return p.rotated(axis, angle); });
    compare("divided_by_w", kx_divide_by_w, [](point4 p) { return p.divided_by_w(); });
    compare("converted", KXP3ChangeUnits,
            [](unit from, unit to, point3 p) { return p.converted(from, to); });
    compare("converted", KXP4ChangeUnits,
            [](unit from, unit to, point4 p) { return p.converted(from, to); });
    compare("converted", KXChangeUnits,
            [](unit from, unit to, float length) { return converted(length, from, to); });
    compare("polar", KXREAToPoint, point3::polar);
    compare("towards", KXEAToVector, vec3::towards);
    compare("polar", KXPointsToREA, [](point3 p, point3 q) { return polar(p, q); });
    compare("polar", KXVectorToEA, [](vec3 v) { return polar(v); });
    compare("range", KXRange, range);
    compare("bearing", KXBearing, bearing);
}

TEST_CASE("quaternions")
{
    compare("a * b", kx_quat_product, [](quat a, quat b) { return a *= b; });
    compare("q * v", kx_quat_rotate, [](quat q, vec3 v) { return q * v; });
    compare("q * p", kx_quat_rotate, [](quat q, point3 p) { return q * p; });
    compare("conjugate", kx_quat_conjugate, [](quat q) { return q.conjugate(); });
    compare("normalised", kx_quat_normalise, [](quat q) { return q.normalised(); });
    compare("slerp", kx_quat_slerp, [](quat a, quat b, float t) { return slerp(a, b, t); });
    compare("about", KXGenerateQuat,
            [](float angle, vec3 axis) { return quat::about(axis, angle); });
    compare("matrix", KXQuatToMatrix, [](quat q) { return q.matrix(); });
    compare("quaternion", KXMatrixToQuat, [](mat4 m) { return m.quaternion(); });
    CHECK(quat::xyzw(1, 2, 3, 4) == quat::wxyz(4, 1, 2, 3));
    CHECK(quat() == quat::wxyz(1, 0, 0, 0));
}

TEST_CASE("matrices")
{
    compare("a * b", KXM4Mult, [](mat4 a, mat4 b) { return a * b; });
    compare("a *= b", KXM4Mult, [](mat4 a, mat4 b) { return a *= b; });
    compare("b = a * b", KXM4Mult, [](mat4 a, mat4 b) { return b = a * b; });
    compare("a + b", KXM4Add, [](mat4 a, mat4 b) { return a + b; });
    compare("a += b", KXM4Add, [](mat4 a, mat4 b) { return a += b; });
    compare("m = inverse", KXM4Inverse, [](mat4 m) {
        const auto inverse = m.inverse();
        m = inverse.value_or(m);
        return inverse ? std::optional(m) : std::nullopt;
    });
    compare("transposed", KXM4Transpose, [](mat4 m) { return m.transposed(); });
    compare("determinant", KXM4Determinant, [](mat4 m) { return m.determinant(); });
    compare("is_identity", KXM4IsUnit, [](mat4 m) { return m.is_identity(); });
    compare("is_orthogonal", KXM4IsOrthogonal, [](mat4 m) { return m.is_orthogonal(); });
    compare("decomposed", KXM4Decompose, [](mat4 m) { return m.decomposed(); });
    compare("matrix", KXM4Compose, [](components parts) { return parts.matrix(); });
    compare("placement", KXM4MatrixComponents, [](mat4 m) { return m.placement(); });
    compare("converted", KXM4ChangeUnits,
            [](unit from, unit to, mat4 m) { return m.converted(from, to); });
    compare("m * p", KXM4P3I1, [](mat4 m, point3 p) { return m * p; });
    compare("m * v", KXM4P3I0, [](mat4 m, vec3 v) { return m * v; });
    compare("m * p4", KXM4P4, [](mat4 m, point4 p) { return m * p; });

    compare("scale", KXM4Scale, [](float x, float y, float z) { return mat4::scale(x, y, z); });
    compare(
        "one scale", [](float s) { return given(KXM4Scale, 0, s, s, s); },
        [](float s) { return mat4::scale(s); });
    compare("translation", KXM4Translate, [](float x, float y, float z) {
        return mat4::translation({x, y, z});
    });
    using Rotation = mat4(float cosine, float sine);
    compare("rotation_x", KXM4RotateX2, static_cast<Rotation *>(mat4::rotation_x));
    compare("rotation_y", KXM4RotateY2, static_cast<Rotation *>(mat4::rotation_y));
    compare("rotation_z", KXM4RotateZ2, static_cast<Rotation *>(mat4::rotation_z));
    compare("shear_xy", KXM4ShearXY2, mat4::shear_xy);
    compare("shear_xz", KXM4ShearXZ2, mat4::shear_xz);
    compare("shear_yz", KXM4ShearYZ2, mat4::shear_yz);
    compare("rotation", oriented, mat4::rotation);
    compare(
        "rotation_x", [](auto a) { return oriented(a, 0, 0, order::zyx); },
        [](float a) { return mat4::rotation_x(a); });
    compare(
        "rotation_y", [](auto a) { return oriented(0, a, 0, order::zyx); },
        [](float a) { return mat4::rotation_y(a); });
    compare(
        "rotation_z", [](auto a) { return oriented(0, 0, a, order::zyx); },
        [](float a) { return mat4::rotation_z(a); });
    compare(
        "matrix",
        [](auto p, auto o) {
            KXM4 m;
            KXM4Position(&m, nullptr, &p, KXRotationOrder(o));
            return m;
        },
        [](position p, order o) { return p.matrix(o); });
    compare("matrices", KXM4Position, [](position p, order o) { return p.matrices(o); });
    compare("viewing", KXM4Projection1, [](position p, float distance, float offset, float scale) {
        return p.viewing(distance, offset, scale);
    });
}

TEST_CASE("matrices of the plane")
{
    compare("a * b", KXM3Mult, [](mat3 a, mat3 b) { return a * b; });
    compare("a *= b", KXM3Mult, [](mat3 a, mat3 b) { return a *= b; });
    compare("a + b", KXM3Add, [](mat3 a, mat3 b) { return a + b; });
    compare("a += b", KXM3Add, [](mat3 a, mat3 b) { return a += b; });
    compare("inverse", KXM3Inverse, [](mat3 m) { return m.inverse(); });
    compare("transposed", KXM3Transpose, [](mat3 m) { return m.transposed(); });
    compare("determinant", KXM3Determinant, [](mat3 m) { return m.determinant(); });
    compare("is_identity", KXM3IsUnit, [](mat3 m) { return m.is_identity(); });
    compare("decomposed", KXM3Decompose, [](mat3 m) { return m.decomposed(); });
    compare("plane_matrix", KXM3Compose, [](components parts) { return parts.plane_matrix(); });
    compare("placement", KXM3MatrixComponents, [](mat3 m) { return m.placement(); });
    compare("m * p", KXM3P2I1, [](mat3 m, point2 p) { return m * p; });
    compare("m * v", KXM3P2I0, [](mat3 m, vec2 v) { return m * v; });
    compare("scale", KXM3Scale, mat3::scale);
    compare("translation", KXM3Translate, [](float x, float y) {
        return mat3::translation({x, y});
    });
    compare("rotation", KXM3Rotate2,
            [](float cosine, float sine) { return mat3::rotation(cosine, sine); });
    CHECK(mat3::rotation(radians(90)) * point2(1, 0) == point2(0, 1));
}

TEST_CASE("boxes, planes, lines and rays")
{
    compare("m * box", KXTransformBox, [](box b, mat4 m) { return m * b; });
    compare(
        "include", KXPutPointInBox,
        [](point3 p, box b) { return b.include(p) ? std::optional(b) : std::nullopt; }, 1);
    compare("include", KXCombineBoxes, [](box a, box b) {
        a.include(b);
        return a;
    });
    compare("middle", KXBoxMidPoint, [](box b) { return b.middle(); });
    compare("diagonal", KXBoxDiagonal, [](box b) { return b.diagonal(); });
    compare("is_valid", KXIsValidBox, [](box b) { return b.is_valid(); });
    compare("converted", KXBoxChangeUnits,
            [](unit from, unit to, box b) { return b.converted(from, to); });
    compare("fit", kx_fit_mesh, [](box b) { return b.fit(); });
    compare(
        "corners", [](KXBox b) { return b; }, [](box b) { return box(b.minimum(), b.maximum()); });

    compare("through", KXPlaneEquation,
            [](point3 p, point3 q, point3 r) { return plane::through(p, q, r); });
    compare("converted", KXPlaneChangeUnits,
            [](unit from, unit to, plane p) { return p.converted(from, to); });

    compare("m * line", KXTransformLine, [](line l, mat4 m) { return m * l; });
    compare(
        "hit", KXLineIxBox, [](line l, box b) { return l.hit(b); }, 1);
    compare(
        "meets", [](auto l, auto b) { return KXLineIxBox(&l, &b, nullptr) == 1; },
        [](line l, box b) { return l.meets(b); });
    compare("parameter", kx_line_parameter, [](line l, point3 p) { return l.parameter(p); });
    compare(
        "ends", [](KXLine l) { return l; }, [](line l) { return line(l.start(), l.end()); });

    compare("m * ray", KXTransformRay, [](ray r, mat4 m) { return m * r; });
    compare(
        "hit", KXRayIxBox, [](ray r, box b) { return r.hit(b); }, 1);
    compare(
        "meets", [](auto r, auto b) { return KXRayIxBox(&r, &b, nullptr) == 1; },
        [](ray r, box b) { return r.meets(b); });
    compare("parameter", kx_ray_parameter, [](ray r, point3 p) { return r.parameter(p); });
    compare("distance", KXRayPointDistance, [](ray r, point3 p) { return r.distance(p); });
    compare(
        "at", [](auto r, auto t) { return combined(r.origin(), r.direction(), 1, t); },
        [](ray r, float t) { return r.at(t); });
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
        const auto if_found = [](bool is_found, const auto &found) {
            return is_found ? std::optional(found) : std::nullopt;
        };
        KXP3 point;
        const auto hit = r.hit(as_given, vertices);
        hits += hit.has_value();
        CHECK(same(if_found(KXRayIxTriangle(&r, &record, records, &point), point), hit));
        CHECK(same(if_found(KXLineIxTriangle(&l, &record, records, &point), point),
                   l.hit(as_given, vertices)));
        KXTriangle made;
        const bool is_small = kx_triangle(records, record.corner[0].vertex, record.corner[1].vertex,
                                          record.corner[2].vertex, &made);
        CHECK(
            same(if_found(!is_small, made), triangle::of(vertices, as_given.vertex(0),
                                                         as_given.vertex(1), as_given.vertex(2))));
        std::array<float, 3> weights = {};
        const bool is_flat = kx_barycentric(&record, records, &records[3], weights.data());
        CHECK(same(if_found(!is_flat, weights), as_given.barycentric(vertices, vertices[3])));
        CHECK(same(record.plane, as_given.plane()));
    }
    CHECK(hits > 20);
    CHECK(!ray({0, 0, 1}, {0, 0, -1}).hit(triangle(), nullptr));
}

TEST_CASE("cameras")
{
    for (const bool is_chosen : {false, true}) {
        const auto got = [is_chosen](point3 eye, point3 target, vec3 up) {
            const viewpoint from = look_at(eye, target, up);
            const std::array<KXM4, 2> matrices = {from.placement, from.view};
            return from.is_chosen == is_chosen ? std::optional(matrices) : std::nullopt;
        };
        compare("look_at", kx_look_at, got, is_chosen);
    }
    compare(
        "look_at's status",
        [](auto eye, auto target) {
            const KXV3 up = {0, 1, 0};
            return kx_look_at(&eye, &target, &up, nullptr, nullptr) == 1;
        },
        [](point3 eye, point3 target) { return look_at(eye, target).is_chosen; });
    compare("perspective", kx_perspective, perspective);
    compare("orthographic", kx_orthographic, orthographic);
    compare("screen_to_ray", kx_screen_to_ray, screen_to_ray);
    CHECK(radians(180) == 3.14159274f);
    CHECK(degrees(0.1) == 5.729577951308233);
}

TEST_CASE("names of numbers")
{
    constexpr order orders[] = {order::xyz, order::xzy, order::yxz,
                                order::yzx, order::zxy, order::zyx};
    constexpr unit units[] = {unit::none,      unit::millimetre,   unit::centimetre, unit::metre,
                              unit::kilometre, unit::inch,         unit::foot,       unit::yard,
                              unit::mile,      unit::nautical_mile};
    for (std::uint32_t i = 0; i < 10; ++i) {
        CHECK(KXUnit(units[i]) == i);
        CHECK(KXRotationOrder(orders[i % 6]) == i % 6);
    }
    constexpr depth depths[] = {depth::zero_to_one, depth::minus_one_to_one, depth::one_to_zero};
    for (std::size_t i = 0; i < 3; ++i) {
        CHECK(KXDepthRange(depths[i]) == i);
        CHECK(vec3(0, 1, 2)[i] == float(i));
        CHECK(point3(0, 1, 2)[i] == float(i));
    }
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
#if __cplusplus >= 202002L
    CHECK(box::around(points) == box::around(points, 3));
#endif
    CHECK(!box::around(points, 0).is_valid());
    const point3 far_away(1e30f, -1e30f, 0);
    CHECK(box::around(&far_away, 1) == box(far_away, far_away));
}

namespace
{

/* What must not compile. */
template <typename A, typename B>
constexpr bool adds = std::is_invocable_v<std::plus<>, A, B>;
static_assert(adds<vec3, vec3> && adds<point3, vec3> && adds<vec3, point3>);
static_assert(!adds<point3, point3> && !adds<vec3, float>);
static_assert(!std::is_invocable_v<std::divides<>, vec3, vec3>);
static_assert(!std::is_constructible_v<quat, float, float, float, float>);
static_assert(!std::is_convertible_v<point3, vec3> && !std::is_convertible_v<vec3, point3>);
static_assert(!std::is_convertible_v<point3, position>);
static_assert(!std::is_convertible_v<KXM4, mat4> && !std::is_convertible_v<KXQuat, quat>);
static_assert(std::is_convertible_v<mat4 *, KXM4 *> && std::is_convertible_v<point3 *, KXP3 *>);

/* What a compiler can do ahead. */
static_assert(cross(vec3(1, 0, 0), vec3(0, 1, 0)) == vec3(0, 0, 1));
static_assert(point3(3, 4, 5) - point3(1, 1, 1) == 0.5 * vec3(4, 6, 8));
static_assert(mat4()(3, 3) == 1.0f && mat4()(0, 3) == 0.0f);

struct WithMembers {
    double x, y, z;
};

/** Of a matrix with the elements 1, 2, 3 and so on, row by row. */
template <std::size_t Size, typename Matrix>
void check_elements(const Matrix &counted)
{
    std::array<float, Size> rows, copied;
    std::iota(rows.begin(), rows.end(), 1.0f);
    CHECK(same(rows, counted));
    CHECK(same(rows, Matrix::from_rows(rows.data())));
    CHECK(same(counted.transposed(), Matrix::from_columns(rows.data())));
    counted.to_rows(copied.data());
    CHECK(copied == rows);
    counted.transposed().to_columns(copied.data());
    CHECK(copied == rows);
    Matrix written;
    CHECK((written(0, 2) = counted(0, 2)) == 3.0f);
    CHECK(written.m[0][2] == 3.0f);
}

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

    CHECK(point4(1, 2, 3, 4).to<std::array<float, 4>>()[3] == 4.0f);
    check_elements<9>(mat3(1, 2, 3, 4, 5, 6, 7, 8, 9));
    check_elements<16>(mat4(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
}

TEST_CASE("what {} makes")
{
    CHECK((same(KXP2{}, vec2{}) && same(KXP2{}, point2{}) && same(KXV3{}, vec3{}) &&
           same(KXP3{}, point3{}) && same(KXPosition{}, position{}) && same(KXPlane{}, plane{}) &&
           same(KXLine{}, line{}) && same(KXRay{}, ray{})));
    CHECK(point4{} == point4(point3{}));
    CHECK(point4(vec3{}).w == 0.0f);
    CHECK(mat4{}.is_identity());
    CHECK(mat3{}.is_identity());
    CHECK(quat{} * vec3(1, 2, 3) == vec3(1, 2, 3));
    CHECK(same(KXPosition{1, 2, 3, 0, 0, 0}, position({1, 2, 3})));
    CHECK(*mat4{}.inverse() == mat4{}); // by value: seven of its zeros are negative
    CHECK(same(KXComponents{1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, components{}));
    CHECK(plane(1, 2, 3, 4).normal() == vec3(1, 2, 3));
    box b;
    CHECK(!b.is_valid());
    CHECK(b.include(point3(1, 2, 3)));
    CHECK(b == box({1, 2, 3}, {1, 2, 3}));
}
