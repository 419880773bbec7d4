/* The rows of the tables: what this library and its peers do alike, and every function alone. */
#ifndef BENCH_COMPARISONS_H
#define BENCH_COMPARISONS_H

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
    /** Another way to this library: it reads its layout, and its results must have its bits. */
    bool is_ours = false;

    KernelFunction find(const char *kernel) const;
};

extern const Library kxmaths5;

struct Peer {
    const Library &against;
    double goal = 0.0;          /**< What the ratio is to stay at or below with AVX2; 0 for none. */
    double baseline_goal = 0.0; /**< The same without. */
};

/** Memory for results or operands, not touched yet, aligned to 64 bytes. */
using Memory = std::shared_ptr<void>;
Memory allocate(std::size_t bytes);

struct Comparison {
    std::string operation;
    const char *kernel;
    Work ours;   /**< With matrices row by row. */
    Work theirs; /**< With matrices column by column; the results go to the same place. */
    std::vector<Peer> peers;

    std::size_t bytes; /**< Size of one record of the results. */
    /**
     * The largest difference between our results and a peer's: of a record, the largest difference
     * of two of its floats, divided by the largest magnitude in it, since one that ought to be 0
     * has no relative precision. Infinite where verdicts differ.
     */
    double (*difference)(const void *ours, const void *theirs, std::size_t records);
    double tolerance; /**< What that may come to. */

    /** Whose time is compared with the peers'. */
    const Library *library = &kxmaths5;

    std::vector<Memory> memory = {}; /**< Kept for as long as the row. */
    /** Brings arrays that runs overwrite back to where they were; may be empty. */
    std::function<void()> reset = {};
    /** For a function over arrays: whether it gives the bits of its single form; may be empty. */
    std::function<bool()> has_bits_of_single_calls = {};

    std::size_t items() const
    {
        return ours.count * ours.groups;
    }
};

std::vector<Comparison> all_comparisons();

/** A function of the catalogue by itself. */
struct Function {
    const char *name;
    const char *unit;  /**< What the time is given for: a call, or a record of an array. */
    std::size_t items; /**< How many of them a run has. */
    std::function<void()> run;
};

std::vector<Function> all_functions();

#endif
