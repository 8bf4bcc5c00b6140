#pragma once

namespace tavero {

// Whether what is clear in a window shows what lies behind it, as it is now. Where not, it is
// black. Needs a QGuiApplication. Defined by the one platform that is linked in.
bool windowsMayBeClear();

} // namespace tavero
