/*
 * A host's floating-point environment: in any rounding mode, with subnormals flushed to zero or
 * not, every function returns, writes what it may and no more, and leaves the environment as it
 * was. And a host that has unmasked exceptions gets none from ordinary inputs, nor from inputs at a
 * boundary, where guards keep divisions, roots and arcsines from being made.
 */
#include "support/calls.h"
#include "support/inputs.h"

#include <doctest/doctest.h>

#include <csetjmp>
#include <csignal>
#include <functional>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using test::Environment;
using test::Inputs;
using test::Kind;

namespace
{

/**
 * Inputs, moderate ones if that is asked for, of which no formula makes an infinity or a NaN unless
 * it divides by zero: of larger ones a named single may become infinite.
 */
class Source : public Inputs
{
public:
    Source(const char *function, bool moderate) : Inputs(function), is_moderate(moderate) {}

    template <typename Record>
    void fill(Record *record)
    {
        Inputs::fill(record);
        moderate(record);
    }

    void fill(KXP3 (&vertices)[4], KXTriangle *triangle)
    {
        Inputs::fill(vertices, triangle);
        moderate(&vertices);
        moderate(&triangle->plane);
    }

private:
    bool is_moderate;

    template <typename Record>
    void moderate(Record *record) const
    {
        if (!is_moderate) {
            return;
        }
        float floats[sizeof(Record) / 4];
        std::memcpy(floats, record, sizeof floats);
        for (float &f : floats) {
            const float size = std::fabs(f);
            f = size == 0 || (size > 1e-8f && size < 1e4f) ? f : 1.0f;
        }
        std::memcpy(record, floats, sizeof floats);
    }
};

sigjmp_buf before_the_call;

void trapped(int)
{
    siglongjmp(before_the_call, 1);
}

/** The call's fault, or that it has trapped. */
__attribute__((noinline)) const char *fault_of(const std::function<const char *()> &call)
{
    return sigsetjmp(before_the_call, 1) == 0 ? call() : "traps";
}

/** These divide by zero where their contract says so. */
bool may_divide_by_zero(const std::string &name)
{
    return name == "KXQuatToMatrix" || name == "KXM4Decompose" || name == "KXM3Decompose";
}

void report(const std::string &name, const char *sharing, const char *fault)
{
    std::fesetenv(FE_DFL_ENV);
    const std::string label = name + " " + std::string(sharing, std::strcspn(sharing, " "));
    CHECK_MESSAGE(fault == nullptr, label, " ", fault == nullptr ? "" : fault);
}

/** Calls every function in every sharing, `repetitions` times with inputs of one kind. */
void try_all(const Environment &wanted, Kind kind, int repetitions)
{
    catalogue::for_every_function([&](const auto &entry) {
        if (wanted.traps_any() && may_divide_by_zero(entry.name)) {
            return;
        }
        for (const char *s = entry.sharings; s != nullptr; s = catalogue::next_sharing(s)) {
            Source inputs(entry.name, wanted.traps_any());
            test::CheckedCall<Source> call(inputs);
            const char *fault = nullptr;
            for (int i = 0; i < repetitions && fault == nullptr; ++i) {
                inputs.use(kind);
                Environment environment = wanted;
                fault = fault_of([&] { return call(entry, s, environment); });
            }
            report(entry.name, s, fault);
        }
    });
}

} // namespace

TEST_CASE("Rounding modes and flushing are neither read nor changed")
{
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (const bool flush : {false, true}) {
            for (const Kind kind : {Kind::lattice, Kind::ordinary, Kind::boundary, Kind::any_bits,
                                    Kind::moved_nans}) {
                try_all({rounding, flush}, kind, 200);
            }
        }
    }
}

TEST_CASE("Unmasked exceptions do not trap")
{
    std::signal(SIGFPE, trapped);
    const Environment unmasked = Environment().unmasked(FE_INVALID | FE_DIVBYZERO);
    for (const Kind kind : {Kind::lattice, Kind::ordinary, Kind::boundary}) {
        try_all(unmasked, kind, 3000);
    }
    // The three that may divide by zero do so for degenerate inputs alone.
    constexpr KXQuat half_turn = {0, 0.6f, 0.8f, 0};
    constexpr KXM3 plane = {{{0, -2, 3}, {1, 0, 4}, {0, 0, 1}}}, flat = {};
    constexpr KXM4 space = {{{0, -2, 0, 3}, {1, 0, 0, 4}, {0, 0, 1, 5}, {0, 0.5f, 0, 1}}},
                   nothing = {};
    KXM4 matrix;
    KXComponents parts;
    Environment environment = unmasked;
    const char *const fault = fault_of([&] {
        environment.enter();
        KXQuatToMatrix(&half_turn, &matrix);
        KXM3Decompose(&plane, &parts);
        KXM3Decompose(&flat, &parts);
        KXM4Decompose(&space, &parts);
        KXM4Decompose(&nothing, &parts);
        return environment.leave() ? nullptr : "changes the environment";
    });
    CHECK(fault == nullptr);
    std::fesetenv(FE_DFL_ENV);
    std::signal(SIGFPE, SIG_DFL);
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
        CHECK(fault_of([&] { return call(), nullptr; }) != nullptr);
    }
    std::signal(SIGSEGV, SIG_DFL);
    munmap(pages, 2 * page);
}
