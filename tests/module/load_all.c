/*
 * A host in plain C99 that loads the module at run time, finds every function by its name and calls
 * it: load_all LIBRARY. It prints the names; all that it knows of the library is the header.
 */
#include <kxmaths5.h>

#if defined(_WIN32)
#include <windows.h>
#define FOUND FARPROC
#define LOAD(path) LoadLibraryA(path)
#define FIND(module, name) GetProcAddress((HMODULE)(module), name)
#define FAILURE() "not loaded"
#define UNLOAD(module) (FreeLibrary((HMODULE)(module)) == 0)
#else
#include <dlfcn.h>
#define FOUND void *
#define LOAD(path) dlopen(path, RTLD_NOW | RTLD_LOCAL)
#define FIND(module, name) dlsym(module, name)
#define FAILURE() dlerror()
#define UNLOAD(module) (dlclose(module) != 0)
#endif
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* ISO C has no cast from an object's address to a function's, so the bytes are copied. */
static void resolve(void *module, const char *name, void *function, size_t size)
{
    FOUND const address = FIND(module, name);
    if (address == NULL || size != sizeof address) {
        fprintf(stderr, "%s: %s\n", name, address == NULL ? "not found" : "not an address");
        exit(1);
    }
    memcpy(function, &address, size);
    puts(name);
}

/*
 * Calls a function through a pointer of the type that is given here. The comparison with the
 * header's declaration makes the compiler refuse any other; in sizeof it is not evaluated, so that
 * this program links to nothing.
 */
#define CALL(result, name, parameters, arguments)                                                  \
    do {                                                                                           \
        result(*function) parameters;                                                              \
        (void)sizeof(function == &name);                                                           \
        resolve(module, #name, &function, sizeof function);                                        \
        (void)function arguments;                                                                  \
    } while (0)

/* All records start as zeros but for these; what the calls make of them is for other tests. */
static KXM4 m4 = {{{2, 0, 0, 1}, {0, 4, 0, 2}, {0, 0, 8, 3}, {0, 0, 0, 1}}}, other4, out4;
static KXM3 m3 = {{{2, 0, 1}, {0, 4, 2}, {0, 0, 1}}}, other3, out3;
static KXV3 v = {3, 4, 12}, w = {0, 0, 1}, out_v;
static KXP2 p2, out_p2;
static KXP3 vertices[3] = {{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}};
static KXP4 p4, out_p4;
static KXBox box = {{-1, -1, -1}, {1, 1, 1}}, out_box;
static KXLine line = {{0, 0, 5}, {0, 0, -5}}, out_line;
static KXRay ray = {{0, 0, 5}, {0, 0, -1}}, out_ray;
static KXTriangle triangle = {{{0, 0, 0, 0}, {0, 1, 0, 0}, {0, 2, 0, 0}}, 0, {0, 0, 1, 0}};
static KXPosition position;
static KXComponents components;
static KXQuat quat;
static KXPlane plane;
static float f, g, h;

static void foundations(void *module)
{
    CALL(double, KXV3Length, (const KXV3 *), (&v));
    CALL(double, KXV3Normalise, (const KXV3 *, KXV3 *), (&v, &out_v));
    CALL(void, KXV3Scale, (KXV3 *, float), (&out_v, 13.0f));
    CALL(void, KXV3Cross, (const KXV3 *, const KXV3 *, KXV3 *), (&v, &w, &out_v));
    CALL(void, KXV3Perpendicular, (const KXV3 *, KXV3 *), (&v, &out_v));
    CALL(void, KXV3Combine, (const KXV3 *, const KXV3 *, KXV3 *, float, float),
         (&v, &w, &out_v, 1, 2));
    CALL(uint32_t, KXBitCount, (uint32_t), (6));
    CALL(uint32_t, KXLSB, (uint32_t), (6));
    CALL(uint32_t, KXMSB, (uint32_t), (6));
    CALL(double, KXInterpolate, (float, float, float, float, float), (0, 0, 1, 2, 0.5f));
    CALL(double, KXDiffTime, (uint32_t, uint32_t), (2, 1));
    CALL(void, KXChangeUnits, (KXUnit, KXUnit, float *), (KX_UNIT_METRE, KX_UNIT_FOOT, &f));
    CALL(void, KXP3ChangeUnits, (KXUnit, KXUnit, KXP3 *), (KX_UNIT_METRE, KX_UNIT_FOOT, &out_v));
    CALL(void, KXP4ChangeUnits, (KXUnit, KXUnit, KXP4 *), (KX_UNIT_METRE, KX_UNIT_FOOT, &out_p4));
    CALL(void, KXBoxChangeUnits, (KXUnit, KXUnit, KXBox *),
         (KX_UNIT_METRE, KX_UNIT_FOOT, &out_box));
    CALL(void, KXPlaneChangeUnits, (KXUnit, KXUnit, KXPlane *),
         (KX_UNIT_METRE, KX_UNIT_FOOT, &plane));
    CALL(void, KXM4ChangeUnits, (KXUnit, KXUnit, KXM4 *), (KX_UNIT_METRE, KX_UNIT_FOOT, &out4));
    CALL(void, KXP3ChangeNUnits, (KXUnit, KXUnit, uint32_t, KXP3 *),
         (KX_UNIT_METRE, KX_UNIT_FOOT, 1, &out_v));
    CALL(void, KXP4ChangeNUnits, (KXUnit, KXUnit, uint32_t, KXP4 *),
         (KX_UNIT_METRE, KX_UNIT_FOOT, 1, &out_p4));
    CALL(void, KXPlaneChangeNUnits, (KXUnit, KXUnit, uint32_t, KXPlane *),
         (KX_UNIT_METRE, KX_UNIT_FOOT, 1, &plane));
}

static void matrices(void *module)
{
    CALL(double, KXM4Determinant, (const KXM4 *), (&m4));
    CALL(double, KXM3Determinant, (const KXM3 *), (&m3));
    CALL(void, KXM4Mult, (const KXM4 *, const KXM4 *, KXM4 *), (&m4, &other4, &out4));
    CALL(void, KXM3Mult, (const KXM3 *, const KXM3 *, KXM3 *), (&m3, &other3, &out3));
    CALL(void, KXM43Mult, (const KXM4 *, const KXM4 *, KXM4 *), (&m4, &other4, &out4));
    CALL(void, KXM4Unit, (KXM4 *), (&other4));
    CALL(void, KXM3Unit, (KXM3 *), (&other3));
    CALL(int32_t, KXM4IsUnit, (const KXM4 *), (&other4));
    CALL(int32_t, KXM3IsUnit, (const KXM3 *), (&other3));
    CALL(int32_t, KXM4IsOrthogonal, (const KXM4 *), (&other4));
    CALL(void, KXM4Transpose, (const KXM4 *, KXM4 *), (&m4, &out4));
    CALL(void, KXM3Transpose, (const KXM3 *, KXM3 *), (&m3, &out3));
    CALL(void, KXM4Add, (const KXM4 *, const KXM4 *, KXM4 *), (&m4, &other4, &out4));
    CALL(void, KXM3Add, (const KXM3 *, const KXM3 *, KXM3 *), (&m3, &other3, &out3));
    CALL(void, KXM4Copy, (const KXM4 *, KXM4 *), (&m4, &out4));
    CALL(void, KXM3Copy, (const KXM3 *, KXM3 *), (&m3, &out3));
    CALL(int32_t, KXM4Inverse, (const KXM4 *, KXM4 *), (&m4, &out4));
    CALL(int32_t, KXM3Inverse, (const KXM3 *, KXM3 *), (&m3, &out3));
}

static void transforms(void *module)
{
    CALL(void, KXM4Scale, (float, float, float, KXM4 *), (2, 3, 4, &out4));
    CALL(void, KXM4Translate, (float, float, float, KXM4 *), (2, 3, 4, &out4));
    CALL(void, KXM4RotateX2, (float, float, KXM4 *), (0, 1, &out4));
    CALL(void, KXM4RotateY2, (float, float, KXM4 *), (0, 1, &out4));
    CALL(void, KXM4RotateZ2, (float, float, KXM4 *), (0, 1, &out4));
    CALL(void, KXM4ShearXY2, (float, KXM4 *), (0.5f, &out4));
    CALL(void, KXM4ShearXZ2, (float, KXM4 *), (0.5f, &out4));
    CALL(void, KXM4ShearYZ2, (float, KXM4 *), (0.5f, &out4));
    CALL(void, KXM3Scale, (float, float, KXM3 *), (2, 3, &out3));
    CALL(void, KXM3Translate, (float, float, KXM3 *), (2, 3, &out3));
    CALL(void, KXM3Rotate2, (float, float, KXM3 *), (0, 1, &out3));
    CALL(void, KXM3P2I0, (const KXM3 *, const KXP2 *, KXP2 *), (&m3, &p2, &out_p2));
    CALL(void, KXM3P2I1, (const KXM3 *, const KXP2 *, KXP2 *), (&m3, &p2, &out_p2));
    CALL(void, KXM4P3I0, (const KXM4 *, const KXP3 *, KXP3 *), (&m4, &v, &out_v));
    CALL(void, KXM4P3I1, (const KXM4 *, const KXP3 *, KXP3 *), (&m4, &v, &out_v));
    CALL(void, KXM4P4, (const KXM4 *, const KXP4 *, KXP4 *), (&m4, &p4, &out_p4));
    CALL(void, KXM3NP2I0, (const KXM3 *, uint32_t, const KXP2 *, KXP2 *), (&m3, 1, &p2, &out_p2));
    CALL(void, KXM3NP2I1, (const KXM3 *, uint32_t, const KXP2 *, KXP2 *), (&m3, 1, &p2, &out_p2));
    CALL(void, KXM4NP3I0, (const KXM4 *, uint32_t, const KXP3 *, KXP3 *), (&m4, 1, &v, &out_v));
    CALL(void, KXM4NP3I1, (const KXM4 *, uint32_t, const KXP3 *, KXP3 *), (&m4, 1, &v, &out_v));
    CALL(void, KXM4NP4, (const KXM4 *, uint32_t, const KXP4 *, KXP4 *), (&m4, 1, &p4, &out_p4));
}

static void orientation(void *module)
{
    CALL(void, KXM4Orientation, (KXM4 *, KXM4 *, float, float, float, KXRotationOrder),
         (&out4, NULL, 1, 2, 3, KX_ORDER_XYZ));
    CALL(void, KXM4Position, (KXM4 *, KXM4 *, const KXPosition *, KXRotationOrder),
         (&out4, NULL, &position, KX_ORDER_XYZ));
    CALL(int32_t, KXM4Decompose, (const KXM4 *, KXComponents *), (&m4, &components));
    CALL(void, KXM4Compose, (KXM4 *, const KXComponents *), (&out4, &components));
    CALL(int32_t, KXM3Decompose, (const KXM3 *, KXComponents *), (&m3, &components));
    CALL(void, KXM3Compose, (KXM3 *, const KXComponents *), (&out3, &components));
    CALL(void, KXM4MatrixComponents, (const KXM4 *, KXPosition *, KXV3 *), (&m4, &position, NULL));
    CALL(void, KXM3MatrixComponents, (const KXM3 *, KXP2 *, float *, float *, float *),
         (&m3, &p2, &f, &g, &h));
    CALL(void, KXGenerateQuat, (float, const KXV3 *, KXQuat *), (1, &v, &quat));
    CALL(void, KXQuatToMatrix, (const KXQuat *, KXM4 *), (&quat, &out4));
    CALL(void, KXMatrixToQuat, (const KXM4 *, KXQuat *), (&out4, &quat));
    CALL(void, KXM4Projection1, (KXM4 *, const KXPosition *, float, float, float),
         (&out4, &position, 10, 0.5f, 1));
}

static void spatial(void *module)
{
    CALL(void, KXTransformBox, (const KXBox *, const KXM4 *, KXBox *), (&box, &m4, &out_box));
    CALL(int32_t, KXPutPointInBox, (const KXP3 *, KXBox *), (&v, &out_box));
    CALL(void, KXCombineBoxes, (KXBox *, const KXBox *), (&out_box, &box));
    CALL(void, KXBoxMidPoint, (const KXBox *, KXP3 *), (&box, &out_v));
    CALL(void, KXBoxDiagonal, (const KXBox *, KXV3 *), (&box, &out_v));
    CALL(int32_t, KXIsValidBox, (const KXBox *), (&box));
    CALL(void, KXTransformLine, (const KXLine *, const KXM4 *, KXLine *), (&line, &m4, &out_line));
    CALL(void, KXTransformRay, (const KXRay *, const KXM4 *, KXRay *), (&ray, &m4, &out_ray));
    CALL(double, KXRayPointDistance, (const KXRay *, const KXP3 *), (&ray, &v));
    CALL(int32_t, KXLineIxBox, (const KXLine *, const KXBox *, KXP3 *), (&line, &box, &out_v));
    CALL(int32_t, KXRayIxBox, (const KXRay *, const KXBox *, KXP3 *), (&ray, &box, &out_v));
    CALL(int32_t, KXLineIxTriangle, (const KXLine *, const KXTriangle *, const KXP3 *, KXP3 *),
         (&line, &triangle, vertices, &out_v));
    CALL(int32_t, KXRayIxTriangle, (const KXRay *, const KXTriangle *, const KXP3 *, KXP3 *),
         (&ray, &triangle, vertices, &out_v));
    CALL(int32_t, KXPlaneEquation, (const KXP3 *, const KXP3 *, const KXP3 *, KXPlane *),
         (vertices, vertices + 1, vertices + 2, &plane));
    CALL(void, KXRotateInPlane, (KXP3 *, const KXV3 *, float), (&out_v, &w, 1));
}

static void polar(void *module)
{
    CALL(double, KXRange, (const KXP3 *, const KXP3 *), (&v, &w));
    CALL(double, KXBearing, (const KXP3 *, const KXP3 *), (&v, &w));
    CALL(void, KXREAToPoint, (float, float, float, KXP3 *), (1, 0.5f, 0.5f, &out_v));
    CALL(void, KXEAToVector, (float, float, KXV3 *), (0.5f, 0.5f, &out_v));
    CALL(void, KXPointsToREA, (const KXP3 *, const KXP3 *, float *, float *, float *),
         (&v, &w, &f, &g, &h));
    CALL(void, KXVectorToEA, (const KXV3 *, float *, float *), (&v, &f, &g));
}

int main(int argc, char **argv)
{
    void *const module = argc == 2 ? LOAD(argv[1]) : NULL;
    if (module == NULL) {
        fprintf(stderr, "load_all: %s\n", argc == 2 ? FAILURE() : "wants the library's path");
        return 1;
    }
    foundations(module);
    matrices(module);
    transforms(module);
    orientation(module);
    spatial(module);
    polar(module);
    return UNLOAD(module);
}
