#include "desktop/MemoryReturn.h"

#include <malloc/malloc.h>

namespace tavero {

void returnFreedMemory() { malloc_zone_pressure_relief(nullptr, 0); } // all zones, all there is

} // namespace tavero
