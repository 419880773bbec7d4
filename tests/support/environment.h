/* The floating-point environment that a host may have set around a call. */
#ifndef KX_TESTS_ENVIRONMENT_H
#define KX_TESTS_ENVIRONMENT_H

#include <cfenv>
#include <cstring>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace test
{

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

    /** The exceptions of <cfenv> that trap. */
    Environment unmasked(int exceptions) const
    {
        Environment environment = *this;
        environment.traps = exceptions;
        return environment;
    }

    bool flushes() const
    {
        return flush;
    }

    bool traps_any() const
    {
        return traps != 0;
    }

    void enter()
    {
        std::fegetenv(&outside);
        std::feclearexcept(FE_ALL_EXCEPT);
        std::fesetround(rounding);
#if defined(__SSE__)
        constexpr unsigned flush_to_zero = 0x8000, denormals_are_zero = 0x0040;
        _mm_setcsr(_mm_getcsr() | (flush ? flush_to_zero | denormals_are_zero : 0U));
#endif
#if defined(__GLIBC__)
        feenableexcept(traps);
#endif
        entered = controls();
    }

    /** Whether the call has left everything but the flags as it was. */
    bool leave()
    {
        const bool kept = controls() == entered;
        raised = std::fetestexcept(watched_exceptions);
        std::fesetenv(&outside);
        return kept;
    }

    /** Which of FE_INVALID and FE_DIVBYZERO were raised between `enter` and `leave`. */
    int raised_flags() const
    {
        return raised;
    }

private:
    struct Controls {
        int rounding, traps;
        unsigned mxcsr;

        bool operator==(const Controls &other) const
        {
            return rounding == other.rounding && traps == other.traps && mxcsr == other.mxcsr;
        }
    };

    static Controls controls()
    {
        Controls now = {std::fegetround(), 0, 0};
#if defined(__GLIBC__)
        now.traps = fegetexcept();
#endif
#if defined(__SSE__)
        constexpr unsigned flags = 0x3f;
        now.mxcsr = _mm_getcsr() & ~flags;
#endif
        return now;
    }

    int rounding = FE_TONEAREST;
    bool flush = false;
    int traps = 0;
    int raised = 0;
    std::fenv_t outside = {};
    Controls entered = {};
};

} // namespace test

#endif
