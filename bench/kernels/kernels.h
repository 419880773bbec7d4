/* The modules' tables, one for each library and way of building it. */
#ifndef BENCH_KERNELS_H
#define BENCH_KERNELS_H

#include "work.h"

#ifdef __cplusplus
extern "C" {
#endif

const Kernel *kernels_of_kxmaths5(void);
const Kernel *kernels_of_glm(void);
const Kernel *kernels_of_glm_intrinsics(void);
const Kernel *kernels_of_cglm(void);
const Kernel *kernels_of_eigen(void);
const Kernel *kernels_of_imath(void);
const Kernel *kernels_of_memory(void);

#ifdef __cplusplus
}
#endif

#endif
