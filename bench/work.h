/*
 * What passes between the benchmark and the modules that hold the kernels, and the loops that all
 * of them share. The loops are static: each module compiles its own.
 */
#ifndef BENCH_WORK_H
#define BENCH_WORK_H

#include <kxmaths5/types.h>

#include <cstddef>
#include <type_traits>
#include <utility>

/**
 * The arrays that one run of a kernel goes through, aligned to 64 bytes. Matrices lie row by row
 * for this library and column by column for its peers: the same numbers, in the layout that each
 * takes without a copy.
 */
struct Work {
    const void *in[3];      /**< The operands of each call. */
    void *out;              /**< The results; may be an operand, for work in place. */
    std::size_t count;      /**< Calls in one run; for arrays of points, points in a group. */
    std::size_t groups = 1; /**< Groups, each with a matrix of its own. */
};

using KernelFunction = void (*)(const Work &work);

/** One operation, repeated over the arrays of a Work. */
struct Kernel {
    const char *name; /**< The same in every library that has the operation; null ends a table. */
    KernelFunction run;
};

/** What a ray met. */
struct Hit {
    int32_t hit;
    KXP3 point; /**< Where; means nothing on a miss. */
};

/** Rays are many, so that their outcomes can't be predicted; what they are cast at is few. */
constexpr std::size_t target_count = 64;

/** A module's table, the only name that it exports. */
#define BENCH_TABLE(name)                                                                          \
    extern "C" __attribute__((visibility("default"))) const Kernel *kernels_of_##name()

BENCH_TABLE(kxmaths5);
BENCH_TABLE(cpp);
BENCH_TABLE(glm);
BENCH_TABLE(glm_intrinsics);
BENCH_TABLE(cglm);
BENCH_TABLE(eigen);
BENCH_TABLE(imath);

namespace
{

/**
 * Makes the compiler finish one result before it begins the next: it must have been stored, and
 * operands must be read again. For inlined peers that is what a call across a module's boundary
 * does by itself. It costs no instruction.
 */
[[maybe_unused]] void keep(const void *result)
{
    __asm__ volatile("" : : "r"(result) : "memory");
}

/** The loops around `One(out, operands...)`, which is inlined into them. */
template <auto One, typename = decltype(One)>
struct Each;

template <auto One, typename Out, typename... In>
struct Each<One, void (*)(Out &, In &...)> {
    /** Every record by itself. */
    static void record(const Work &work)
    {
        for_all(work, [](Work w, Out *out, In *...in) {
            for (std::size_t i = 0; i < w.count; ++i) {
                One(out[i], in[i]...);
                keep(&out[i]);
            }
        });
    }

    /** Each from the result before; nothing has to be kept, since the next needs it anyway. */
    static void chain(const Work &work)
    {
        for_all(work, [](Work w, Out *out, auto *, auto *links) {
            out[0] = links[0];
            for (std::size_t i = 1; i < w.count; ++i) {
                One(out[i], out[i - 1], links[i]);
            }
        });
    }

    /** Arrays of points, each with a matrix, as a copy that no store to the results could change.
     */
    static void group(const Work &work)
    {
        for_all(work, [](Work w, Out *out, auto *in, auto *matrices) {
            for (std::size_t group = 0; group < w.groups; ++group) {
                std::decay_t<decltype(*matrices)> matrix = matrices[group];
                const std::size_t begin = group * w.count;
                for (std::size_t i = begin; i < begin + w.count; ++i) {
                    One(out[i], in[i], matrix);
                }
            }
        });
    }

    /** Rays, targets in turn, and what all targets share. */
    static void ray(const Work &work)
    {
        for_all(work, [](Work w, Out *out, auto *rays, auto *targets, auto *...shared) {
            for (std::size_t i = 0; i < w.count; ++i) {
                One(out[i], rays[i], targets[i % target_count], *shared...);
                keep(&out[i]);
            }
        });
    }

private:
    template <typename Loop>
    static void for_all(const Work &work, Loop loop)
    {
        with_arrays(work, loop, std::index_sequence_for<In...>());
    }
    template <typename Loop, std::size_t... Place>
    static void with_arrays(const Work &work, Loop loop, std::index_sequence<Place...>)
    {
        // Some peers take no const; nothing is written through.
        loop(work, static_cast<Out *>(work.out),
             static_cast<In *>(const_cast<void *>(work.in[Place]))...);
    }
};

} // namespace

#endif
