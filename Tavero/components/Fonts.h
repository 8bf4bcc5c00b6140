#pragma once

#include <QString>

namespace tavero {

// The family of the interface's own font, whose digits have equal width. It is loaded on the first
// call. The system's own family where the program was built without it.
QString uiFontFamily();

} // namespace tavero
