#include "desktop/MemoryReturn.h"

#include <malloc.h>

namespace tavero {

void returnFreedMemory() {
#ifdef __GLIBC__ // other C libraries return what is freed by themselves
    malloc_trim(0);
#endif
}

} // namespace tavero
