/*
 * Every instruction set's copy of the kernels: arrays and the product against their plain formulas,
 * the others against the baseline's copy.
 */
#include "kernels.h"

#include "support/check.h"
#include "support/environment.h"
#include "support/inputs.h"

#include <cfenv>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#endif

using namespace test;

namespace
{

#if defined(FE_INVALID) && defined(FE_DIVBYZERO) && defined(FE_OVERFLOW)
constexpr int flags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
#else
constexpr int flags = 0; // WebAssembly has none
#endif
constexpr Kind kinds[] = {Kind::lattice, Kind::ordinary, Kind::boundary, Kind::any_bits};

/** The flags that a call raises; arithmetic before and after it stays on its side. */
template <typename Call>
int raised_by(Call call)
{
    test::feclearexcept(FE_ALL_EXCEPT);
    call();
    return test::fetestexcept(flags);
}

/** The first float that differs, as text; empty if none does. The sign and payload of a NaN are the
 * processor's. */
std::string difference(const std::vector<float> &wanted, const std::vector<float> &got)
{
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto w = bits_as<std::uint32_t>(wanted[i]), g = bits_as<std::uint32_t>(got[i]);
        if (w != g && !(is_nan(w) && is_nan(g))) {
            return ", float " + std::to_string(i) + ": wanted " + show(w) + ", got " + show(g);
        }
    }
    return "";
}

#if defined(__linux__)
/** Room that ends where memory does: to read on is to crash, whatever is read with. */
class Room
{
public:
    Room()
    {
        void *const pages =
            mmap(nullptr, 2 * room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        REQUIRE(pages != MAP_FAILED);
        start = static_cast<char *>(pages);
        REQUIRE(mprotect(start + room, room, PROT_NONE) == 0);
    }
    ~Room()
    {
        munmap(start, 2 * room);
    }
    Room(const Room &) = delete;
    Room &operator=(const Room &) = delete;

    const void *copy_at_end(const void *from, std::size_t size)
    {
        REQUIRE(size <= room);
        return size == 0 ? start + room : std::memcpy(start + room - size, from, size);
    }

private:
    static constexpr std::size_t room = 0x200000;
    char *start;
};
#else
struct Room {
    const void *copy_at_end(const void *from, std::size_t)
    {
        return from;
    }
};
#endif

/**
 * Each coordinate as one sum of products in double, from left to right. A row has as many elements
 * as Columns says, and a coordinate that the point doesn't have is 1.
 */
template <std::size_t Columns, typename Matrix, typename Point>
Point plain_form(const Matrix &m, const Point &p)
{
    constexpr std::size_t size = sizeof(Point) / 4;
    Point image;
    const float *const in = &p.x;
    for (std::size_t r = 0; r < size; ++r) {
        double sum = double{m.m[r][0]} * double{in[0]};
        for (std::size_t c = 1; c < Columns; ++c) {
            sum += c < size ? double{m.m[r][c]} * double{in[c]} : double{m.m[r][c]};
        }
        (&image.x)[r] = static_cast<float>(sum);
    }
    return image;
}

KXM4 plain_product(const KXM4 &a, const KXM4 &b)
{
    KXM4 product;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            double sum = double{a.m[r][0]} * double{b.m[0][c]};
            for (int k = 1; k < 4; ++k) {
                sum += double{a.m[r][k]} * double{b.m[k][c]};
            }
            product.m[r][c] = static_cast<float>(sum);
        }
    }
    return product;
}

/** Any count, any start, in place and not, with floats around the arrays that must stay. */
template <std::size_t Columns, typename Matrix, typename Point>
void check_arrays(const char *label,
                  void (*kernel)(const Matrix *, std::uint32_t, const Point *, Point *))
{
    constexpr std::size_t floats = sizeof(Point) / 4;
    constexpr std::size_t matrix_columns = sizeof(Matrix::m[0]) / 4;
    // What the formula doesn't need isn't read: memory ends there, and signalling NaNs raise
    // nothing.
    constexpr std::size_t read_of_matrix = ((floats - 1) * matrix_columns + Columns) * 4;
    Inputs inputs(label);
    Room matrix_room, room;
    std::vector<std::uint32_t> counts = array_counts();
    counts.pop_back(); // the single calls here are slow
    for (const Kind kind : kinds) {
        for (const std::uint32_t count : counts) {
            for (std::size_t start = 0; start < (count > 0xffff ? 1 : 16); ++start) {
                inputs.use(kind);
                Matrix m;
                inputs.fill(&m);
                for (std::size_t r = 0; r < floats; ++r) {
                    for (std::size_t c = Columns; c < matrix_columns; ++c) {
                        m.m[r][c] = std::numeric_limits<float>::signaling_NaN();
                    }
                }
                std::vector<float> in(start + count * floats + 16), out(in.size());
                for (float &f : in) {
                    f = inputs.number();
                }
                std::vector<float> wanted = out, wanted_in_place = in, place = in;
                const auto points = [start](std::vector<float> &v) {
                    return reinterpret_cast<Point *>(v.data() + start);
                };
                const int plain = raised_by([&] {
                    for (std::uint32_t i = 0; i < count; ++i) {
                        points(wanted)[i] = points(wanted_in_place)[i] =
                            plain_form<Columns>(m, points(in)[i]);
                    }
                });
                const auto *last_matrix =
                    static_cast<const Matrix *>(matrix_room.copy_at_end(&m, read_of_matrix));
                const auto *last =
                    static_cast<const Point *>(room.copy_at_end(points(in), count * sizeof(Point)));
                const int fast = raised_by([&] { kernel(last_matrix, count, last, points(out)); });
                kernel(&m, count, points(place), points(place));
                const std::string call = std::string(label) + ", count " + std::to_string(count) +
                                         ", start " + std::to_string(start);
                const std::string fault = difference(wanted, out),
                                  fault_in_place = difference(wanted_in_place, place);
                REQUIRE_MESSAGE(fault.empty(), call, fault);
                REQUIRE_MESSAGE(fault_in_place.empty(), call, ", in place", fault_in_place);
                REQUIRE_MESSAGE((fast & ~plain) == 0, call, ": raises ", fast,
                                ", the form for one point ", plain);
            }
        }
    }
}

void check_product(const char *label, void (*product)(const KXM4 *, const KXM4 *, KXM4 *))
{
    Inputs inputs(label);
    const auto floats = [](const KXM4 &m) {
        return std::vector<float>(&m.m[0][0], &m.m[0][0] + 16);
    };
    for (int i = 0; i < 40000; ++i) {
        inputs.use(kinds[i % 4]);
        KXM4 a, b, wanted, square, out;
        inputs.fill(&a);
        inputs.fill(&b);
        const int plain = raised_by([&] { wanted = plain_product(a, b); });
        square = plain_product(a, a);
        const int fast = raised_by([&] { product(&a, &b, &out); });
        KXM4 in_a = a, in_b = b, in_both = a;
        product(&in_a, &b, &in_a);
        product(&a, &in_b, &in_b);
        product(&in_both, &in_both, &in_both);
        const auto check = [&](const char *sharing, const KXM4 &expected, const KXM4 &got) {
            const std::string fault = difference(floats(expected), floats(got));
            REQUIRE_MESSAGE(fault.empty(), label, " ", i, sharing, fault);
        };
        check("", wanted, out);
        check(", out is a", wanted, in_a);
        check(", out is b", wanted, in_b);
        check(", a*a into a", square, in_both);
        REQUIRE_MESSAGE((fast & ~plain) == 0, label, " ", i, ": raises ", fast,
                        ", the plain product ", plain);
    }
}

/** The form for one point, as an array form. */
template <void (*Position)(const KXM4 *, const KXP3 *, KXP3 *)>
void one_by_one(const KXM4 *m, std::uint32_t count, const KXP3 *in, KXP3 *out)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        Position(m, &in[i], &out[i]);
    }
}

/** What one copy of each function that is no array form gives back. */
struct Copies {
    double (*determinant)(const KXM4 *);
    std::int32_t (*inverse)(const KXM4 *, KXM4 *);
    void (*orientation)(KXM4 *, KXM4 *, float, float, float, KXRotationOrder);
    void (*transform_box)(const KXBox *, const KXM4 *, KXBox *);
};

// In other rounding modes the angles' reduction can miss, and the C library takes over.
#if defined(FE_UPWARD) && defined(FE_DOWNWARD)
constexpr int rounding_modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD};
#else
constexpr int rounding_modes[] = {FE_TONEAREST, FE_TONEAREST, FE_TONEAREST};
#endif

/** All kinds of matrices, points, angles and boxes: every copy is held to the baseline's. */
void check_as_baseline(const Copies &copies)
{
    const Copies baseline = {kx::baseline::determinant, kx::baseline::inverse,
                             kx::baseline::orientation, kx::baseline::transform_box};
    Inputs inputs("copies");
    for (int i = 0; i < 100000; ++i) {
        inputs.use(kinds[i % 4]);
        KXM4 m;
        KXP3 angles;
        KXBox box;
        inputs.fill(&m);
        if (i % 8 < 4) {
            m.m[3][0] = m.m[3][1] = m.m[3][2] = 0; // the inverse by cofactors
            m.m[3][3] = 1;
        }
        inputs.fill(&angles);
        inputs.fill(&box);
        const KXRotationOrder order = inputs.below(7);
        std::vector<float> wanted(55, 1.25f), got = wanted;
        const auto run = [&](std::vector<float> &out, const Copies &of) {
            const auto matrix = [&out](std::size_t at) {
                return reinterpret_cast<KXM4 *>(&out[at]);
            };
            out[0] = static_cast<float>(of.inverse(&m, matrix(1)));
            of.orientation(matrix(17), matrix(33), angles.x, angles.y, angles.z, order);
            of.transform_box(&box, &m, reinterpret_cast<KXBox *>(&out[49]));
            return of.determinant(&m);
        };
        test::fesetround(rounding_modes[i / 4 % 3]);
        double wanted_d = 0, got_d = 0;
        const int plain = raised_by([&] { wanted_d = run(wanted, baseline); });
        const int fast = raised_by([&] { got_d = run(got, copies); });
        test::fesetround(FE_TONEAREST);
        const std::string fault = difference(wanted, got);
        REQUIRE_MESSAGE(fault.empty(), i, fault);
        REQUIRE_MESSAGE((std::memcmp(&wanted_d, &got_d, sizeof got_d) == 0 || wanted_d != wanted_d),
                        i, ", determinant ", got_d);
        REQUIRE_MESSAGE((fast & ~plain) == 0, i, ": raises ", fast, ", the baseline ", plain);
    }
}

} // namespace

#define CHECK_COPY(instruction_set, runs)                                                          \
    TEST_CASE("The copy for " #instruction_set)                                                    \
    {                                                                                              \
        if (!(runs)) {                                                                             \
            MESSAGE("skipped: not on this processor, or not in this build");                       \
            return;                                                                                \
        }                                                                                          \
        using namespace kx::instruction_set;                                                       \
        check_arrays<2, KXM3, KXP2>("KXP2 directions", directions);                                \
        check_arrays<3, KXM3, KXP2>("KXP2 positions", positions);                                  \
        check_arrays<3, KXM4, KXP3>("KXP3 directions", directions);                                \
        check_arrays<4, KXM4, KXP3>("KXP3 positions", positions);                                  \
        check_arrays<4, KXM4, KXP3>("KXP3 position", one_by_one<position>);                        \
        check_arrays<4, KXM4, KXP4>("KXP4", homogeneous);                                          \
        check_product("product", product);                                                         \
        check_as_baseline({determinant, inverse, orientation, transform_box});                     \
    }

CHECK_COPY(baseline, true)
#if defined(KX_HAS_AVX2)
CHECK_COPY(avx2, KX_RUNS_AVX2)
#endif
#if defined(KX_HAS_AVX512)
CHECK_COPY(avx512, KX_RUNS_AVX512)
#endif
