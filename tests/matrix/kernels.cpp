/* Every instruction set's copy of the kernels against the forms for one point and one product. */
#include "matrix/kernels.h"

#include "corpus.h"
#include "matrix/forms.h"
#include "support/check.h"

#include <cfenv>
#include <cstring>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

using namespace test;
using digest::Corpus;
using digest::Kind;

namespace
{

#if defined(FE_INVALID) && defined(FE_DIVBYZERO)
constexpr int flags = FE_INVALID | FE_DIVBYZERO;
#else
constexpr int flags = 0; // WebAssembly has none
#endif
constexpr Kind kinds[] = {Kind::lattice, Kind::ordinary, Kind::boundary, Kind::any_bits};

/** The flags that a call raises; arithmetic before and after it stays on its side. */
template <typename Call>
int raised_by(Call call)
{
    std::feclearexcept(FE_ALL_EXCEPT);
    call();
    return std::fetestexcept(flags);
}

/** The sign and payload of a NaN are the processor's. */
bool same_floats(const std::vector<float> &a, const std::vector<float> &b)
{
    bool same = a.size() == b.size();
    for (std::size_t i = 0; same && i < a.size(); ++i) {
        const auto x = digest::bits_of(a[i]), y = digest::bits_of(b[i]);
        same = x == y || (digest::is_nan(x) && digest::is_nan(y));
    }
    return same;
}

#if defined(__linux__)
/** Room that ends where memory does: to read on is to crash, whatever is read with. */
class Room
{
public:
    Room() : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
    {
        void *const pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        REQUIRE(pages != MAP_FAILED);
        start = static_cast<char *>(pages);
        REQUIRE(mprotect(start + page, page, PROT_NONE) == 0);
    }
    ~Room() { munmap(start, 2 * page); }
    Room(const Room &) = delete;
    Room &operator=(const Room &) = delete;

    const void *copy_at_end(const void *from, std::size_t size)
    {
        REQUIRE(size <= page);
        return size == 0 ? start + page : std::memcpy(start + page - size, from, size);
    }

private:
    std::size_t page;
    char *start;
};
#else
struct Room {
    const void *copy_at_end(const void *from, std::size_t) { return from; }
};
#endif

/** Any count, any start, in place and not, with floats around the arrays that must stay. */
template <typename Matrix, typename Point>
void check_arrays(const char *label, Point (*form)(const Matrix &, const Point &),
                  void (*kernel)(const Matrix *, std::uint32_t, const Point *, Point *))
{
    constexpr std::size_t floats = sizeof(Point) / 4;
    Corpus corpus(label);
    Room matrix_room, room;
    int failures = 0;
    for (const Kind kind : kinds) {
        for (std::uint32_t count = 0; count <= 70; ++count) {
            for (std::size_t start = 0; start < 16; ++start) {
                corpus.use(kind);
                Matrix m;
                corpus.fill(&m);
                std::vector<float> in(start + count * floats + 16), out(in.size());
                for (float &f : in) {
                    f = corpus.number();
                }
                std::vector<float> wanted = out, wanted_in_place = in, place = in;
                const auto points = [start](std::vector<float> &v) { return reinterpret_cast<Point *>(v.data() + start); };
                const int plain = raised_by([&] {
                    for (std::uint32_t i = 0; i < count; ++i) {
                        points(wanted)[i] = points(wanted_in_place)[i] = form(m, points(in)[i]);
                    }
                });
                const auto *last_matrix = static_cast<const Matrix *>(matrix_room.copy_at_end(&m, sizeof m));
                const auto *last = static_cast<const Point *>(room.copy_at_end(points(in), count * sizeof(Point)));
                const int fast = raised_by([&] { kernel(last_matrix, count, last, points(out)); });
                kernel(&m, count, points(place), points(place));
                const bool right = same_floats(out, wanted) && same_floats(place, wanted_in_place) && (fast & ~plain) == 0;
                failures += right ? 0 : 1;
                CHECK_MESSAGE((right || failures > 5), label, ", count ", count, ", start ", start, ", flags ", fast, " for ", plain);
            }
        }
    }
    CHECK(failures == 0);
}

void check_product(const char *label, void (*product)(const KXM4 *, const KXM4 *, KXM4 *))
{
    Corpus corpus(label);
    int failures = 0;
    const auto floats = [](const KXM4 &m) { return std::vector<float>(&m.m[0][0], &m.m[0][0] + 16); };
    for (int i = 0; i < 40000; ++i) {
        corpus.use(kinds[i % 4]);
        KXM4 a, b, wanted, square, out;
        corpus.fill(&a);
        corpus.fill(&b);
        const int plain = raised_by([&] { kx::multiply<4>(&a, &b, &wanted); });
        kx::multiply<4>(&a, &a, &square);
        const int fast = raised_by([&] { product(&a, &b, &out); });
        KXM4 in_a = a, in_b = b, in_both = a;
        product(&in_a, &b, &in_a);
        product(&a, &in_b, &in_b);
        product(&in_both, &in_both, &in_both);
        const auto same = [&](const KXM4 &x, const KXM4 &y) { return same_floats(floats(x), floats(y)); };
        failures += same(out, wanted) && same(in_a, wanted) && same(in_b, wanted) && same(in_both, square) && (fast & ~plain) == 0 ? 0 : 1;
    }
    CHECK_MESSAGE(failures == 0, label);
}

} // namespace

#define CHECK_COPY(instruction_set, runs)                                                                                        \
    TEST_CASE("The copy for " #instruction_set)                                                                                  \
    {                                                                                                                            \
        if (!(runs)) {                                                                                                           \
            MESSAGE("skipped: not on this processor, or not in this build");                                                     \
            return;                                                                                                              \
        }                                                                                                                        \
        check_arrays<KXM3, KXP2>("KXP2 directions", kx::direction, kx::instruction_set::directions);                             \
        check_arrays<KXM3, KXP2>("KXP2 positions", kx::position, kx::instruction_set::positions);                                \
        check_arrays<KXM4, KXP3>("KXP3 directions", kx::direction, kx::instruction_set::directions);                             \
        check_arrays<KXM4, KXP3>("KXP3 positions", kx::position, kx::instruction_set::positions);                                \
        check_arrays<KXM4, KXP4>("KXP4", kx::homogeneous, kx::instruction_set::homogeneous);                                     \
        check_product("product", kx::instruction_set::product);                                                                  \
    }

CHECK_COPY(baseline, true)
#if defined(KX_HAS_AVX2)
CHECK_COPY(avx2, KX_RUNS_AVX2)
#endif
#if defined(KX_HAS_AVX512)
CHECK_COPY(avx512, KX_RUNS_AVX512)
#endif
