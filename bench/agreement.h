/* Whether two libraries did the same job: how far apart their results are. */
#ifndef BENCH_AGREEMENT_H
#define BENCH_AGREEMENT_H

#include <cstddef>

/**
 * The largest difference between our results and a peer's, over all records: of a record, the
 * largest difference of two of its floats, divided by the largest magnitude in it. Single floats
 * aren't divided by themselves, since one that ought to be 0 has no relative precision.
 */
using Difference = double (*)(const void *ours, const void *theirs, std::size_t records);

template <std::size_t Floats>
double difference_of_records(const void *ours, const void *theirs, std::size_t records);

/** Ours lie row by row, the peer's column by column. */
double difference_of_matrices(const void *ours, const void *theirs, std::size_t records);

/** Infinite when a verdict differs; where both hit, the points are compared. */
double difference_of_hits(const void *ours, const void *theirs, std::size_t records);

#endif
