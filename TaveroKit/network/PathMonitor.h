#pragma once

#include <functional>

namespace tavero {

// How packets leave the machine at one moment, as the system puts it.
struct PathState {
    bool isSatisfied = false; // there is a way out; else the rest means nothing
    bool usesWiFi = false;
    bool usesWiredEthernet = false;
    bool usesCellular = false;

    bool operator==(const PathState&) const = default;
};

// What watches the path.
class PathMonitor {
  public:
    virtual ~PathMonitor() = default;

    // Calls `changed` soon and at every change, from any thread, one call at a time. Called once.
    virtual void start(std::function<void(const PathState&)> changed) = 0;
};

} // namespace tavero
