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

/**
 * Each module's table, the only name that it exports. A table is constinit: the program has a copy
 * of it, made before any constructor runs.
 */
extern __attribute__((visibility("default"))) const Kernel kernels_of_kxmaths5[], kernels_of_cpp[],
    kernels_of_glm[], kernels_of_glm_intrinsics[], kernels_of_cglm[], kernels_of_eigen[],
    kernels_of_imath[];

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

/** Calls the loop with the arrays of a run, typed as the job takes records of them. */
template <typename Out, typename... In, typename Loop>
void with_arrays(const Work &work, void (*)(Out &, In &...), Loop loop)
{
    [&]<std::size_t... Place>(std::index_sequence<Place...>)
    {
        // Some peers take no const; nothing is written through.
        loop(work, static_cast<Out *>(work.out),
             static_cast<In *>(const_cast<void *>(work.in[Place]))...);
    }
    (std::index_sequence_for<In...>());
}

/*
 * The loops around a job, a lambda `(out, operands...)` of references that captures nothing: it is
 * inlined into them.
 */

/** Every record by itself. */
template <typename Job>
constexpr KernelFunction each(Job)
{
    return [](const Work &work) {
        with_arrays(work, +Job(), [](Work w, auto *out, auto *...in) {
            for (std::size_t i = 0; i < w.count; ++i) {
                Job()(out[i], in[i]...);
                keep(&out[i]);
            }
        });
    };
}

/** Each from the result before; nothing has to be kept, since the next needs it anyway. */
template <typename Job>
constexpr KernelFunction chain(Job)
{
    return [](const Work &work) {
        with_arrays(work, +Job(), [](Work w, auto *out, auto *, auto *links) {
            out[0] = links[0];
            for (std::size_t i = 1; i < w.count; ++i) {
                Job()(out[i], out[i - 1], links[i]);
            }
        });
    };
}

/** Arrays of points, each with a matrix, as a copy that no store to the results could change. */
template <typename Job>
constexpr KernelFunction arrays(Job)
{
    return [](const Work &work) {
        with_arrays(work, +Job(), [](Work w, auto *out, auto *in, auto *matrices) {
            for (std::size_t group = 0; group < w.groups; ++group) {
                std::decay_t<decltype(*matrices)> matrix = matrices[group];
                const std::size_t begin = group * w.count;
                for (std::size_t i = begin; i < begin + w.count; ++i) {
                    Job()(out[i], in[i], matrix);
                }
            }
        });
    };
}

/** Rays, targets in turn, and what all targets share. */
template <typename Job>
constexpr KernelFunction rays(Job)
{
    return [](const Work &work) {
        with_arrays(work, +Job(), [](Work w, auto *out, auto *in, auto *targets, auto *...shared) {
            for (std::size_t i = 0; i < w.count; ++i) {
                Job()(out[i], in[i], targets[i % target_count], *shared...);
                keep(&out[i]);
            }
        });
    };
}

} // namespace

#endif
