#include "desktop/sim/SimRunningApps.h"

namespace tavero {

std::optional<RunningApps::HaveEnded> SimRunningApps::askToQuit(const std::string& bundlePath) {
    if (!running.contains(bundlePath)) return std::nullopt;
    asked.push_back(bundlePath);
    if (obeys) running.erase(bundlePath);
    return [this, bundlePath] { return !running.contains(bundlePath); };
}

} // namespace tavero
