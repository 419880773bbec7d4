/*
 * What Windows calls when it loads the module.
 *
 * This is the module's entry point itself: with a C runtime of its own the module would have
 * thread-local storage, and DisableThreadLibraryCalls fails for a module that has.
 */
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
#if defined(KX_HAS_AVX2)
        // Elsewhere the compiler's runtime does this itself, at the same time.
        __builtin_cpu_init();
#endif
    }
    return TRUE;
}
