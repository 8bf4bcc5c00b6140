#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// A process of an app.
struct AppProcess {
    std::int32_t pid = 0;
    std::int32_t parent = 0;
    std::string program; // path of the executable, empty if unknown
};

// Which processes of an app to ask, by pid, so that the app ends as it would by itself: those that
// no other process of it started, for they end their own helpers. What was only put around an app
// is seen through: a sandbox, the runtime of an AppImage, a shell that waits for it.
std::vector<std::int32_t> quitTargets(const std::vector<AppProcess>& app);

} // namespace tavero
