#include "platform/mac/PrivateSymbols.h"

#include <dlfcn.h>

namespace tavero::PrivateSymbols {

// These files exist only in the system's shared cache, where dlopen alone finds them.

void* ioKit() {
    static void* const library =
        dlopen("/System/Library/Frameworks/IOKit.framework/IOKit", RTLD_LAZY);
    return library;
}

void* ioReport() {
    static void* const library = dlopen("/usr/lib/libIOReport.dylib", RTLD_LAZY);
    return library;
}

void* networkStatistics() {
    static void* const library =
        dlopen("/System/Library/PrivateFrameworks/NetworkStatistics.framework/NetworkStatistics",
               RTLD_NOW);
    return library;
}

void* tcc() {
    static void* const library =
        dlopen("/System/Library/PrivateFrameworks/TCC.framework/Versions/A/TCC", RTLD_LAZY);
    return library;
}

void* find(void* library, const char* name) { return library ? dlsym(library, name) : nullptr; }

} // namespace tavero::PrivateSymbols
