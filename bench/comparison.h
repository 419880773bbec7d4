/* Rows in which this library and its peers do the same job. */
#ifndef BENCH_COMPARISON_H
#define BENCH_COMPARISON_H

#include "agreement.h"
#include "work.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/** A library to compare with, or a limit of the machine. */
struct Library {
    const char *name;
    const Kernel *(*kernels)();
    /** For a limit: the kernel that shows it, whatever the row's is. Its results mean nothing. */
    const char *limit = nullptr;

    bool is_limit() const
    {
        return limit != nullptr;
    }
    KernelFunction find(const char *kernel) const;
};

extern const Library kxmaths5, glm_plain, glm_intrinsics, cglm, eigen, imath, copying, scaling;

/** The ratio that a row is to stay at or below. */
struct Goal {
    double vectors = 0.0;  /**< With AVX2 or better; 0 for none. */
    double baseline = 0.0; /**< Without; 0 for none. */
};

struct Peer {
    const Library &against;
    Goal goal = {};
};

struct Comparison {
    std::string operation;
    const char *kernel;
    Work ours;   /**< With matrices row by row. */
    Work theirs; /**< With matrices column by column; the results go to the same place. */
    std::vector<Peer> peers;

    Difference difference;
    double tolerance;  /**< What the difference may come to. */
    std::size_t bytes; /**< Size of one record of the results. */

    /** Brings arrays that runs overwrite back to where they were; may be empty. */
    std::function<void()> reset = {};
    /** For a function over arrays: whether it gives the bits of its single form; may be empty. */
    std::function<bool()> has_bits_of_single_calls = {};

    std::size_t items() const
    {
        return ours.count * ours.groups;
    }
};

/** Memory for results or operands, not touched yet, aligned to 64 bytes. */
using Memory = std::shared_ptr<void>;
Memory allocate(std::size_t bytes);

std::vector<Comparison> point_comparisons();
std::vector<Comparison> matrix_comparisons();
std::vector<Comparison> spatial_comparisons();

#endif
