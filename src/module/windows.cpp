/*
 * What Windows calls when it loads the module.
 *
 * This is the module's entry point itself: with a C runtime of its own the module would have
 * storage for each thread, and Windows refuses DisableThreadLibraryCalls to a module that has.
 */
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
#if defined(KX_HAS_AVX2)
        // Elsewhere the compiler's runtime asks the processor by itself, at the same moment.
        __builtin_cpu_init();
#endif
    }
    return TRUE;
}
