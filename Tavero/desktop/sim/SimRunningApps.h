#pragma once

#include "desktop/RunningApps.h"

#include <set>
#include <string>
#include <vector>

namespace tavero {

// Apps that run and end as a test or the demo says. Must outlive what askToQuit() returned.
class SimRunningApps final : public RunningApps {
  public:
    std::set<std::string> running;  // by bundlePath
    std::vector<std::string> asked; // to quit, in this order
    bool obeys = true;              // an app that is asked ends at once; otherwise it stays

    std::optional<HaveEnded> askToQuit(const std::string& bundlePath) override;
};

} // namespace tavero
