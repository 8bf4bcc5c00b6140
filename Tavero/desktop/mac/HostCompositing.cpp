#include "desktop/Compositing.h"

namespace tavero {

bool windowsMayBeClear() { return true; }

} // namespace tavero
