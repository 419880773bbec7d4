/* What memory allows: the bytes of an array of points moved with no arithmetic, or next to none. */
#include "array.h"
#include "kernels.h"

#include <string.h>

namespace
{

size_t floats_of(const Work *work)
{
    return work->groups * work->count * 3;
}

void copy(const Work *work)
{
    memcpy(work->out, work->first, floats_of(work) * sizeof(float));
}

/** Four floats, loaded and stored from any address. */
typedef float Four __attribute__((vector_size(16), aligned(4), may_alias));

void scale(const Work *work)
{
    const float *in = array<float>(work->first);
    float *out = array<float>(work->out);
    const size_t count = floats_of(work);
    size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        *array<Four>(static_cast<void *>(out + i)) =
            *array<Four>(static_cast<const void *>(in + i)) * 1.0009765625f;
    }
    for (; i < count; ++i) {
        out[i] = in[i] * 1.0009765625f;
    }
}

const Kernel kernels[] = {
    {"copy", copy},
    {"scale", scale},
    {nullptr, nullptr},
};

} // namespace

BENCH_EXPORT const Kernel *kernels_of_memory()
{
    return kernels;
}
