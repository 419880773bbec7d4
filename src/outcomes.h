/* What functions report: a status, 0 for success, or whether a path hits. */
#ifndef KX_OUTCOMES_H
#define KX_OUTCOMES_H

#include <stdint.h>

namespace kx
{

constexpr int32_t done = 0;
constexpr int32_t singular = 1; /**< A matrix that cannot be inverted or taken apart. */
constexpr int32_t no_plane = 1; /**< Three points on a line, or too close to it. */

constexpr int32_t miss = 0;
constexpr int32_t hit = 1;

} // namespace kx

#endif
