#include "desktop/DisplayPlatform.h"

namespace tavero {

void chooseDisplayPlatform() {} // there is one

} // namespace tavero
