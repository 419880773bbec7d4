#include "agreement.h"

#include "work.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/** Infinite for a NaN, which would be lost in a maximum. */
double difference_of(const float *ours, const float *theirs, std::size_t count)
{
    double apart = 0.0, largest = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const double difference = std::fabs(double(ours[i]) - double(theirs[i]));
        if (std::isnan(difference)) {
            return std::numeric_limits<double>::infinity();
        }
        apart = std::max(apart, difference);
        largest = std::max(largest, std::fabs(double(ours[i])));
    }
    return apart == 0.0 ? 0.0 : apart / largest;
}

} // namespace

template <std::size_t Floats>
double difference_of_records(const void *ours, const void *theirs, std::size_t records)
{
    const auto *a = static_cast<const float *>(ours);
    const auto *b = static_cast<const float *>(theirs);
    double largest = 0.0;
    for (std::size_t i = 0; i < records; ++i) {
        largest = std::max(largest, difference_of(a + i * Floats, b + i * Floats, Floats));
    }
    return largest;
}

template double difference_of_records<1>(const void *, const void *, std::size_t);
template double difference_of_records<3>(const void *, const void *, std::size_t);
template double difference_of_records<4>(const void *, const void *, std::size_t);
template double difference_of_records<6>(const void *, const void *, std::size_t);

double difference_of_matrices(const void *ours, const void *theirs, std::size_t records)
{
    const auto *a = static_cast<const KXM4 *>(ours);
    const auto *b = static_cast<const KXM4 *>(theirs);
    double largest = 0.0;
    for (std::size_t i = 0; i < records; ++i) {
        float rows[16], turned[16];
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                rows[4 * r + c] = a[i].m[r][c];
                turned[4 * r + c] = b[i].m[c][r];
            }
        }
        largest = std::max(largest, difference_of(rows, turned, 16));
    }
    return largest;
}

double difference_of_hits(const void *ours, const void *theirs, std::size_t records)
{
    const auto *a = static_cast<const Hit *>(ours);
    const auto *b = static_cast<const Hit *>(theirs);
    double largest = 0.0;
    for (std::size_t i = 0; i < records; ++i) {
        if (a[i].hit != b[i].hit) {
            return std::numeric_limits<double>::infinity();
        }
        if (a[i].hit) {
            largest = std::max(largest, difference_of(&a[i].point.x, &b[i].point.x, 3));
        }
    }
    return largest;
}
