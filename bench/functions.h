/* Every function of the library by itself. */
#ifndef BENCH_FUNCTIONS_H
#define BENCH_FUNCTIONS_H

#include "data.h"

#include <cstring>
#include <functional>
#include <vector>

/** Where the functions leave their results. */
struct Results {
    KXM4 matrices[record_count], other_matrices[record_count];
    KXM3 plane_matrices[record_count];
    KXV3 vectors[record_count];
    KXP2 plane_points[record_count];
    KXP4 homogeneous_points[record_count];
    KXBox boxes[record_count];
    KXLine lines[record_count];
    KXRay rays[record_count];
    KXPlane planes[record_count];
    KXPosition positions[record_count];
    KXComponents components[record_count];
    KXQuat quaternions[record_count];
    double values[record_count];
    float singles[record_count], other_singles[record_count], third_singles[record_count];
    uint32_t words[record_count];
    int32_t verdicts[record_count];
};

/** Points in an array that a function is given whole. */
constexpr std::size_t array_count = 1000;

template <typename Point>
struct Array {
    Point in[array_count], out[array_count];

    Array()
    {
        fill(in, array_count);
        std::memcpy(out, in, sizeof in);
    }
};

template <typename Point>
Array<Point> &points()
{
    static Array<Point> array;
    return array;
}

struct Function {
    const char *name;
    const char *unit;  /**< What the time is told for. */
    std::size_t items; /**< How many of them a run has. */
    std::function<void()> run;
    /** For a function over arrays: whether it gives the bits of its single form; may be empty. */
    std::function<bool()> has_bits_of_single_calls = {};
};

class Functions
{
public:
    /** A function that is called for each record by itself: call(data, results, which record). */
    template <typename Call>
    void add(const char *name, Call call)
    {
        rows.push_back({name, "call", record_count, [call] {
                            const Data &in = data();
                            Results &out = results();
                            for (std::size_t i = 0; i < record_count; ++i) {
                                call(in, out, i);
                            }
                        }});
    }

    /** A function over arrays, and its single form: call(in, out, count) and single(in, out). */
    template <typename Point, typename Call, typename Single>
    void add_array(const char *name, Call call, Single single)
    {
        const auto run = [call] {
            call(points<Point>().in, points<Point>().out, static_cast<uint32_t>(array_count));
        };
        const auto check = [run, single] {
            run();
            for (std::size_t i = 0; i < array_count; ++i) {
                Point image;
                single(&points<Point>().in[i], &image);
                if (std::memcmp(&image, &points<Point>().out[i], sizeof image) != 0) {
                    return false;
                }
            }
            return true;
        };
        rows.push_back({name, "point", array_count, run, check});
    }

    void add(const Function &row)
    {
        rows.push_back(row);
    }

    const std::vector<Function> &all() const
    {
        return rows;
    }

private:
    static Results &results()
    {
        static Results records;
        return records;
    }

    std::vector<Function> rows;
};

void add_foundations(Functions &functions);
void add_matrix(Functions &functions);
void add_orientation(Functions &functions);
void add_spatial(Functions &functions);
void add_polar(Functions &functions);

#endif
