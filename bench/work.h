/*
 * What passes between the benchmark and the modules that hold the kernels. Plain C, so that nothing
 * but these records crosses the boundary.
 */
#ifndef BENCH_WORK_H
#define BENCH_WORK_H

#include <kxmaths5/types.h>

#include <stddef.h>

/**
 * The arrays that one run of a kernel goes through. Addresses are aligned to 64 bytes. Matrices lie
 * row by row for this library and column by column for its peers: the same numbers, in the layout
 * that each takes without a copy.
 */
typedef struct Work {
    const void *first;  /**< The first operand of each call. */
    const void *second; /**< The second, for kernels with two. */
    const void *third;  /**< The third, for kernels with three. */
    void *out;          /**< The results; may be an operand, for work in place. */
    size_t count;       /**< Calls in one run; for arrays of points, points in a group. */
    size_t groups;      /**< Groups, each with a matrix of its own; 1 where there are none. */
} Work;

typedef void (*KernelFunction)(const Work *work);

/** One operation, repeated over the arrays of a Work. */
typedef struct Kernel {
    const char *name; /**< The same in every library that has the operation; null ends a table. */
    KernelFunction run;
} Kernel;

/** What a ray met. */
typedef struct Hit {
    int32_t hit;
    KXP3 point; /**< Where; means nothing on a miss. */
} Hit;

/** Rays are many, so that their outcomes can't be learned by heart; what they are cast at is few.
 */
enum { target_count = 64 };

/** The name that a module's only export has. */
#ifdef __cplusplus
#define BENCH_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define BENCH_EXPORT __attribute__((visibility("default")))
#endif

/**
 * Makes the compiler finish one result before it begins the next: it must have been stored, and
 * operands must be read again. For inlined peers that is what a call across a module's boundary
 * does by itself. It costs no instruction.
 */
static inline void keep(const void *result)
{
    __asm__ volatile("" : : "r"(result) : "memory");
}

#endif
