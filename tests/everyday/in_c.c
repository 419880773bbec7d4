/* The inline functions as a C compiler makes them, for a test in C++, which includes this, to
 * compare with its own. */
#include "kxmaths5/everyday.h"

#ifdef __cplusplus
#define KX_IN_C(function) extern "C" __typeof__(function) *const function##_in_c
#else
#define KX_IN_C(function) __typeof__(function) *const function##_in_c = function
#endif

KX_IN_C(kx_dot);
KX_IN_C(kx_distance);
KX_IN_C(kx_lerp);
KX_IN_C(kx_quat_product);
KX_IN_C(kx_quat_conjugate);
KX_IN_C(kx_quat_normalise);
KX_IN_C(kx_quat_rotate);
KX_IN_C(kx_quat_slerp);
KX_IN_C(kx_look_at);
KX_IN_C(kx_perspective);
KX_IN_C(kx_orthographic);
KX_IN_C(kx_divide_by_w);
KX_IN_C(kx_screen_to_ray);
KX_IN_C(kx_fit_mesh);
KX_IN_C(kx_triangle);
KX_IN_C(kx_ray_parameter);
KX_IN_C(kx_line_parameter);
KX_IN_C(kx_barycentric);
