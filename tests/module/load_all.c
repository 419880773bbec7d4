/*
 * A host in plain C99 that loads the module at run time, finds every function by its name and calls
 * one: load_all LIBRARY. All that it knows of the library is the header and the names.
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

static void *module;

/* ISO C has no cast from an object's address to a function's, so the bytes are copied. */
static void resolve(const char *name, void *function, size_t size)
{
    FOUND const address = FIND(module, name);
    if (address == NULL || size != sizeof address) {
        fprintf(stderr, "%s: %s\n", name, address == NULL ? "not found" : "not an address");
        exit(1);
    }
    memcpy(function, &address, size);
}

/* A pointer to the function of that name. Its type comes from the header, without a use of the
 * function, so that this program links to nothing. */
#define FUNCTION(name)                                                                             \
    __typeof__(&name) name##_;                                                                     \
    resolve(#name, &name##_, sizeof name##_)
#define EXPORTED(name)                                                                             \
    {                                                                                              \
        FUNCTION(name);                                                                            \
    }

int main(int argc, char **argv)
{
    module = argc == 2 ? LOAD(argv[1]) : NULL;
    if (module == NULL) {
        fprintf(stderr, "load_all: %s\n", argc == 2 ? FAILURE() : "wants the library's path");
        return 1;
    }
#include "exported.inc"

    FUNCTION(KXV3Length);
    const KXV3 v = {3, 4, 12};
    if (KXV3Length_(&v) != 13) {
        fprintf(stderr, "load_all: KXV3Length gives another result\n");
        return 1;
    }

    if (UNLOAD(module)) {
        fprintf(stderr, "load_all: not unloaded\n");
        return 1;
    }
    return 0;
}
