/*
 * A host's floating-point environment: in any rounding mode, with subnormals flushed to zero or
 * not, every function returns, writes what it may and no more, and leaves the environment as it
 * was. And a host that has unmasked exceptions gets none from ordinary inputs, nor from inputs at a
 * boundary, where guards keep divisions, roots and arcsines from being made: a compiler that
 * computes a quotient ahead of its guard, to throw it away, is found by the flag that it raises.
 */
#include "support/calls.h"
#include "support/check.h"
#include "support/inputs.h"

#include <limits>
#include <string>

#if defined(__linux__) && defined(__x86_64__)
#include <csetjmp>
#include <csignal>
#include <functional>
#include <sys/mman.h>
#include <unistd.h>
#endif

using namespace test;

namespace
{

/**
 * Inputs, quiet ones if that is asked for, of which no formula makes an infinity or a NaN unless it
 * divides by zero: of larger ones a named single may become infinite. Many of these are zeros,
 * alone or whole records, as guards are there for.
 */
class Source : public Inputs
{
public:
    Source(const char *function, bool quiet) : Inputs(function), is_quiet(quiet) {}

    template <typename Record>
    void fill(Record *record)
    {
        Inputs::fill(record);
        quieten(record);
    }

    void fill(KXP3 (&vertices)[4], KXTriangle *triangle)
    {
        Inputs::fill(vertices, triangle);
        quieten(&vertices);
        quieten(&triangle->plane);
    }

private:
    bool is_quiet;

    template <typename Record>
    void quieten(Record *record)
    {
        if (!is_quiet) {
            return;
        }
        float floats[sizeof(Record) / 4];
        std::memcpy(floats, record, sizeof floats);
        const std::uint32_t zeros = below(4);
        for (float &f : floats) {
            const float size = std::fabs(f);
            const bool is_zero = size == 0 || zeros == 3 || (zeros == 2 && below(2) == 0);
            f = is_zero ? 0.0f : size > 1e-8f && size < 1e4f ? f : 1.0f;
        }
        std::memcpy(record, floats, sizeof floats);
    }
};

/** These divide by zero where their contract says so. */
bool may_divide_by_zero(const std::string &name)
{
    return name == "KXQuatToMatrix" || name == "KXM4Decompose" || name == "KXM3Decompose";
}

/** Calls every function in every sharing, `repetitions` times with inputs of one kind. */
void try_all(const Environment &wanted, bool quiet, Kind kind, int repetitions)
{
    catalogue::for_every_function([&](const auto &entry) {
        if (quiet && may_divide_by_zero(entry.name)) {
            return;
        }
        for (const char *s = entry.sharings; s != nullptr; s = catalogue::next_sharing(s)) {
            Source inputs(entry.name, quiet);
            CheckedCall<Source> call(inputs);
            const char *fault = nullptr;
            for (int i = 0; i < repetitions && fault == nullptr; ++i) {
                inputs.use(kind);
                Environment environment = wanted;
                fault = call(entry, s, environment);
                if (fault == nullptr && quiet && environment.raised_flags() != 0) {
                    fault = "divides by zero, or raises an invalid operation";
                }
            }
            CHECK_MESSAGE(fault == nullptr, entry.name, " ", std::string(s, std::strcspn(s, " ")),
                          " ", fault == nullptr ? "" : fault);
        }
    });
}

void check_quiet(const char *label, void (*call)())
{
    Environment environment;
    environment.enter();
    call();
    environment.leave();
    CHECK_MESSAGE(environment.raised_flags() == 0, label);
}

constexpr KXBox box = {{0, 0, 0}, {1, 1, 1}};
KXP3 point;

#if defined(__linux__) && defined(__x86_64__)
sigjmp_buf before_the_call;

void trapped(int)
{
    siglongjmp(before_the_call, 1);
}

__attribute__((noinline)) bool traps(const std::function<void()> &call)
{
    if (sigsetjmp(before_the_call, 1) != 0) {
        return true;
    }
    call();
    return false;
}
#endif

} // namespace

// By means of x86-64 and glibc.
#if defined(__linux__) && defined(__x86_64__)
TEST_CASE("Rounding modes and flushing are neither read nor changed")
{
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (const bool flush : {false, true}) {
            for (const Kind kind : {Kind::lattice, Kind::ordinary, Kind::boundary, Kind::any_bits,
                                    Kind::moved_nans}) {
                try_all({rounding, flush}, false, kind, 200);
            }
        }
    }
}

TEST_CASE("A count with the top bit set is neither negative nor a small one")
{
    // Arrays of so many records end where memory does: to go on until there is to trap.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void *const pages =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    REQUIRE(pages != MAP_FAILED);
    REQUIRE(mprotect(static_cast<char *>(pages) + page, page, PROT_NONE) == 0);
    std::signal(SIGSEGV, trapped);

    constexpr std::uint32_t count = 0x80000001U;
    constexpr KXM3 plane = {};
    constexpr KXM4 space = {};
    auto *const p2 = static_cast<KXP2 *>(pages);
    auto *const p3 = static_cast<KXP3 *>(pages);
    auto *const p4 = static_cast<KXP4 *>(pages);
    auto *const planes = static_cast<KXPlane *>(pages);
    const std::function<void()> calls[] = {[&] { KXM3NP2I0(&plane, count, p2, p2); },
                                           [&] { KXM3NP2I1(&plane, count, p2, p2); },
                                           [&] { KXM4NP3I0(&space, count, p3, p3); },
                                           [&] { KXM4NP3I1(&space, count, p3, p3); },
                                           [&] { KXM4NP4(&space, count, p4, p4); },
                                           [&] { KXP3ChangeNUnits(1, 2, count, p3); },
                                           [&] { KXP4ChangeNUnits(1, 2, count, p4); },
                                           [&] { KXPlaneChangeNUnits(1, 2, count, planes); }};
    for (const auto &call : calls) {
        CAPTURE(&call - calls);
        CHECK(traps(call));
    }
    std::signal(SIGSEGV, SIG_DFL);
    munmap(pages, 2 * page);
}
#endif

TEST_CASE("Neither a division by zero nor an invalid operation")
{
    for (const Kind kind : {Kind::lattice, Kind::ordinary, Kind::boundary}) {
        try_all({}, true, kind, 1000);
    }
}

TEST_CASE("Nor where they may be expected")
{
    check_quiet("functions that may divide by zero do so for degenerate inputs alone", [] {
        constexpr KXQuat half_turn = {0, 0.6f, 0.8f, 0};
        constexpr KXM3 plane = {{{0, -2, 3}, {1, 0, 4}, {0, 0, 1}}}, flat = {};
        constexpr KXM4 space = {{{0, -2, 0, 3}, {1, 0, 0, 4}, {0, 0, 1, 5}, {0, 0.5f, 0, 1}}},
                       nothing = {};
        KXM4 matrix;
        KXComponents parts;
        KXQuatToMatrix(&half_turn, &matrix);
        KXM3Decompose(&plane, &parts);
        KXM3Decompose(&flat, &parts);
        KXM4Decompose(&space, &parts);
        KXM4Decompose(&nothing, &parts);
    });
    check_quiet("what need not be looked at any more may be NaN", [] {
        const KXRay ray = {{2, 0.5f, 0.5f}, {1, not_a_number, 1}};
        const KXLine beside = {{-1, 0.5f, 0.5f}, {-2, not_a_number, 0.5f}};
        const KXLine from_inside = {{0.5f, 0.5f, 0.5f}, {2, not_a_number, 2}};
        KXRayIxBox(&ray, &box, &point);
        KXLineIxBox(&beside, &box, &point);
        KXLineIxBox(&from_inside, &box, &point);
    });
    check_quiet("the translation that directions leave out", [] {
        // Constants: to bring such a NaN here by x87 registers would raise the flag already.
        constexpr float unread = std::numeric_limits<float>::signaling_NaN();
        static constexpr KXM4 m = {{{1, 0, 0, unread}, {0, 1, 0, unread}, {0, 0, 1, unread}, {}}};
        static constexpr KXM3 plane = {{{1, 0, unread}, {0, 1, unread}, {}}};
        const KXV3 up = {0, 1, 0};
        const KXP2 in_plane = {1, 2};
        KXP2 turned;
        KXM4P3I0(&m, &up, &point);
        KXM4NP3I0(&m, 1, &up, &point);
        KXM3P2I0(&plane, &in_plane, &turned);
        KXM3NP2I0(&plane, 1, &in_plane, &turned);
    });
    check_quiet("no point wanted, and none that would be valid", [] {
        const KXRay ray = {{0.5f, 0.5f, 0.5f}, {infinity, 1, 1}};
        KXRayIxBox(&ray, &box, nullptr);
    });
    check_quiet("a miss, on another axis than that of an infinite step", [] {
        const KXRay ray = {{0.5f, 2, 0.5f}, {infinity, 1, 1}};
        KXRayIxBox(&ray, &box, &point);
    });
}
