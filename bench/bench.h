/* What the parts of the benchmark offer one another: data.cpp, comparisons.cpp, functions.cpp and
 * measure.cpp. */
#ifndef BENCH_BENCH_H
#define BENCH_BENCH_H

#include "work.h"

#include <kxmaths5.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/* The numbers that everything here works on: the same in every run, from a fixed seed. */

/** Records of each kind: enough that no two neighbouring calls see the same, few enough for L1. */
constexpr std::size_t record_count = target_count;

/** Records in an array that a function is given whole. */
constexpr std::size_t array_count = 1000;

/** So many there are of each kind: any of the first may be the first of an array. */
constexpr std::size_t stored_count = record_count + array_count;

/** Some 100 kB of rays: a branch predictor can't learn their outcomes, the second cache holds them.
 */
constexpr std::size_t ray_count = 16384;

/** Matrices as this library reads them, and transposed, as its peers do. */
struct Matrices {
    alignas(64) kxm::mat4 rows[stored_count];
    alignas(64) kxm::mat4 columns[stored_count];
};

/** Rays and what they are cast at: ray i at target i modulo target_count. */
struct Rays {
    alignas(64) kxm::ray mixed[ray_count]; /**< Half of them hit, in no order. */
    alignas(64) kxm::ray hits[ray_count];
    alignas(64) kxm::ray misses[ray_count];
};

struct Data {
    /** Scale, shear, rotation and translation. */
    Matrices affine;
    /** As affine, with a last row that isn't 0 0 0 1. */
    Matrices general;
    /**
     * A rotation about a point, and a thousandth closer to it. So points may go through again and
     * again in place and neither run away nor sink to subnormals, and chains stay in bounds.
     */
    Matrices placements;
    alignas(64) kxm::mat3 plane_matrices[stored_count];

    /** From -10 to 10. */
    alignas(64) kxm::point3 points[stored_count];
    alignas(64) kxm::point3 other_points[stored_count];
    alignas(64) kxm::point4 homogeneous_points[stored_count];
    alignas(64) kxm::vec2 plane_points[stored_count];
    /** Of length 1. */
    alignas(64) kxm::vec3 unit_vectors[stored_count];
    /** Three from -pi to pi. */
    alignas(64) kxm::vec3 angles[stored_count];
    alignas(64) kxm::position positions[stored_count];
    /** Scale, rotation and translation; no shear and no perspective. */
    alignas(64) KXComponents components[stored_count];
    alignas(64) kxm::quat quaternions[stored_count];
    /** From 0.5 to 2. */
    alignas(64) float factors[stored_count];
    alignas(64) uint32_t words[stored_count];

    /** What rays are cast at comes first. */
    alignas(64) kxm::box boxes[stored_count];
    alignas(64) kxm::triangle triangles[stored_count];
    alignas(64) kxm::plane planes[stored_count];
    alignas(64) kxm::point3 vertices[3 * stored_count];
    Rays at_boxes;
    Rays at_triangles;
    alignas(64) kxm::line lines_at_boxes[stored_count];
    alignas(64) kxm::line lines_at_triangles[stored_count];
};

const Data &data();

/** Fills an array of points with coordinates from -10 to 10. */
void fill(KXP3 *points, std::size_t count);

/** The same for homogeneous points. */
void fill(KXP4 *points, std::size_t count);

/* The rows of the tables: what this library and its peers do alike, and every function alone. */

/** A library to compare with, or a limit of the machine. */
struct Library {
    const char *name;
    const Kernel *kernels;
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

/* Google Benchmark, driven so that what is compared is measured close together. */

/** One of several ways to do the same work. */
struct Contender {
    std::string name;
    std::function<void(int thread)> run;
    std::size_t items; /**< Calls or points in one run of one thread. */
    int threads = 1;
};

enum class Clock {
    processor, /**< Time on the processor: others that run on the machine count less. */
    wall,      /**< The only clock that shows whether threads work at the same time. */
};

/** Nanoseconds per item, one value for each repetition. */
using Times = std::vector<double>;

/**
 * Measures the contenders in turn, and does that again and again: repetition i of one lies some
 * milliseconds from repetition i of the other, so the ratio of the two feels little of what else
 * goes on. Every other turn runs backwards, so that no contender always follows the same one.
 */
std::vector<Times> measure(const std::vector<Contender> &contenders, int repetitions,
                           Clock clock = Clock::processor);

/** The value below which a share of the values lies, interpolated; 0.5 gives the median. */
double quantile(std::vector<double> values, double share);

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

/**
 * The times of KXM4NP3I1 over arrays of one size, for each number of threads, the largest last.
 * Each thread has arrays of its own.
 */
std::vector<Times> measure_arrays(std::size_t points, const std::vector<int> &threads,
                                  int repetitions);

#endif
