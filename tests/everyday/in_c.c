#include "in_c.h"

const KXInline kx_in_c = {kx_dot,           kx_distance,       kx_lerp,
                          kx_quat_product,  kx_quat_conjugate, kx_quat_normalise,
                          kx_quat_rotate,   kx_quat_slerp,     kx_look_at,
                          kx_perspective,   kx_orthographic,   kx_divide_by_w,
                          kx_screen_to_ray, kx_fit_mesh,       kx_triangle,
                          kx_ray_parameter, kx_line_parameter, kx_barycentric};
