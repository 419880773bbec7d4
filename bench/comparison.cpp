#include "comparison.h"

#include "kernels/kernels.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

const Library kxmaths5 = {"kxmaths5", kernels_of_kxmaths5};
const Library glm_plain = {"GLM", kernels_of_glm};
const Library glm_intrinsics = {"GLM with intrinsics", kernels_of_glm_intrinsics};
const Library cglm = {"cglm, called", kernels_of_cglm};
const Library eigen = {"Eigen", kernels_of_eigen};
const Library imath = {"Imath", kernels_of_imath};
const Library copying = {"memcpy", kernels_of_memory, "copy"};
const Library scaling = {"load, scale, store", kernels_of_memory, "scale"};

KernelFunction Library::find(const char *kernel) const
{
    const char *wanted = is_limit() ? limit : kernel;
    for (const Kernel *k = kernels(); k->name != nullptr; ++k) {
        if (std::strcmp(k->name, wanted) == 0) {
            return k->run;
        }
    }
    throw std::logic_error(std::string(name) + " has no kernel " + wanted);
}

Memory allocate(std::size_t bytes)
{
    constexpr std::size_t alignment = 64;
    void *address = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (address == nullptr) {
        throw std::bad_alloc();
    }
    return Memory(address, std::free);
}
