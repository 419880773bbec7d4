/* The floating-point environment that a host may have set around a call. */
#ifndef KX_TESTS_ENVIRONMENT_H
#define KX_TESTS_ENVIRONMENT_H

#include <cfenv>
#include <cstring>
#include <utility>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace test
{

#if defined(_WIN64) && defined(__SSE__)
/* MinGW-w64's <cfenv> asks in each call which processor this is, and a virtual machine takes longer
 * to answer than all else that a test does. SSE alone computes here, and its bits are the flags of
 * <cfenv>. */
using fenv_t = unsigned;
inline void fegetenv(fenv_t *environment)
{
    *environment = _mm_getcsr();
}
inline void fesetenv(const fenv_t *environment)
{
    _mm_setcsr(*environment);
}
inline void feclearexcept(int exceptions)
{
    _mm_setcsr(_mm_getcsr() & ~static_cast<unsigned>(exceptions));
}
inline int fetestexcept(int exceptions)
{
    return static_cast<int>(_mm_getcsr()) & exceptions;
}
inline void fesetround(int mode)
{
    _mm_setcsr((_mm_getcsr() & ~0x6000U) | static_cast<unsigned>(mode) << 3);
}
#else
using std::feclearexcept;
using std::fegetenv;
using std::fenv_t;
using std::fesetenv;
using std::fesetround;
using std::fetestexcept;
#endif

/* WebAssembly has neither exceptions nor any rounding mode but the one. */
#if defined(FE_INVALID) && defined(FE_DIVBYZERO)
constexpr int watched_exceptions = FE_INVALID | FE_DIVBYZERO;
#else
constexpr int watched_exceptions = 0;
#endif

/** The rounding mode with a name; -1 where there is none. */
inline int rounding_named(const char *name)
{
#if defined(FE_UPWARD) && defined(FE_DOWNWARD) && defined(FE_TOWARDZERO)
    if (std::strcmp(name, "up") == 0) {
        return FE_UPWARD;
    }
    if (std::strcmp(name, "down") == 0) {
        return FE_DOWNWARD;
    }
    if (std::strcmp(name, "zero") == 0) {
        return FE_TOWARDZERO;
    }
#endif
    static_cast<void>(name);
    return -1;
}

/** Lasts from `enter` to `leave`. */
class Environment
{
public:
    Environment() = default;

    /** Flushing takes subnormal inputs for zeros and stores zeros in their place. */
    Environment(int rounding_mode, bool flushes) : rounding(rounding_mode), flush(flushes) {}

    bool flushes() const
    {
        return flush;
    }

    void enter()
    {
        fegetenv(&outside);
        feclearexcept(FE_ALL_EXCEPT);
        fesetround(rounding);
#if defined(__SSE__)
        constexpr unsigned flush_to_zero = 0x8000, denormals_are_zero = 0x0040;
        _mm_setcsr(_mm_getcsr() | (flush ? flush_to_zero | denormals_are_zero : 0U));
#endif
        entered = controls();
    }

    /** Whether the call has left everything but the flags as it was. */
    bool leave()
    {
        const bool kept = controls() == entered;
        raised = fetestexcept(watched_exceptions);
        fesetenv(&outside);
        return kept;
    }

    /** Which of FE_INVALID and FE_DIVBYZERO were raised between `enter` and `leave`. */
    int raised_flags() const
    {
        return raised;
    }

private:
    /** The rounding mode of <cfenv>, and SSE's with all that it has but flags. */
    static std::pair<int, unsigned> controls()
    {
#if defined(__SSE__)
        constexpr unsigned flags = 0x3f;
        return {std::fegetround(), _mm_getcsr() & ~flags};
#else
        return {std::fegetround(), 0U};
#endif
    }

    int rounding = FE_TONEAREST;
    bool flush = false;
    int raised = 0;
    fenv_t outside = {};
    std::pair<int, unsigned> entered = {};
};

} // namespace test

#endif
