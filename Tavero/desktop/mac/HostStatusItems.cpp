#include "desktop/mac/MacStatusItems.h"

namespace tavero {

// The system tints templates and keeps the bar on screen.
std::unique_ptr<StatusItems> hostStatusItems(const Appearance&, Clock&) {
    return std::make_unique<MacStatusItems>(hostStatusItem);
}

} // namespace tavero
