/* The inline functions as a C compiler makes them, for a test in C++, which includes this, to
 * compare with its own. */
#include "kxmaths5/everyday.h"

KX_BEGIN_DECLARATIONS

typedef struct KXInline {
    double (*dot)(const KXV3 *, const KXV3 *);
    double (*distance)(const KXP3 *, const KXP3 *);
    void (*lerp)(const KXP3 *, const KXP3 *, float, KXP3 *);
    void (*quat_product)(const KXQuat *, const KXQuat *, KXQuat *);
    void (*quat_conjugate)(const KXQuat *, KXQuat *);
    double (*quat_normalise)(const KXQuat *, KXQuat *);
    void (*quat_rotate)(const KXQuat *, const KXV3 *, KXV3 *);
    void (*quat_slerp)(const KXQuat *, const KXQuat *, float, KXQuat *);
    int32_t (*look_at)(const KXP3 *, const KXP3 *, const KXV3 *, KXM4 *, KXM4 *);
    void (*perspective)(float, float, float, float, KXDepthRange, KXM4 *);
    void (*orthographic)(float, float, float, float, float, float, KXDepthRange, KXM4 *);
    int32_t (*divide_by_w)(const KXP4 *, KXP3 *);
    void (*screen_to_ray)(const KXM4 *, const KXM4 *, float, float, float, float, KXRay *);
    int32_t (*fit_mesh)(const KXBox *, KXM4 *, KXM4 *);
    int32_t (*triangle)(const KXP3 *, uint32_t, uint32_t, uint32_t, KXTriangle *);
    double (*ray_parameter)(const KXRay *, const KXP3 *);
    double (*line_parameter)(const KXLine *, const KXP3 *);
    int32_t (*barycentric)(const KXTriangle *, const KXP3 *, const KXP3 *, float *);
} KXInline;

extern const KXInline kx_in_c;

KX_END_DECLARATIONS

#ifndef __cplusplus
const KXInline kx_in_c = {kx_dot,           kx_distance,       kx_lerp,
                          kx_quat_product,  kx_quat_conjugate, kx_quat_normalise,
                          kx_quat_rotate,   kx_quat_slerp,     kx_look_at,
                          kx_perspective,   kx_orthographic,   kx_divide_by_w,
                          kx_screen_to_ray, kx_fit_mesh,       kx_triangle,
                          kx_ray_parameter, kx_line_parameter, kx_barycentric};
#endif
