#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The apps that run on this desktop, so that one can be asked to quit. Main thread only.
class RunningApps {
  public:
    // Whether all processes have ended that the app had when it was asked. To be called on the main
    // thread, as often as one likes.
    using HaveEnded = std::function<bool()>;

    virtual ~RunningApps() = default;

    // Asks the app with this id, AppUsage::bundlePath, to quit. It is a polite request, on which
    // an app may ask about unsaved work, take its time or stay; nothing is ever forced. Returns at
    // once. Absent, and nobody was asked, if no such app runs, if its processes can't be told apart
    // from others, or if Tavero is it or runs inside it.
    virtual std::optional<HaveEnded> askToQuit(const std::string& bundlePath) = 0;
};

// The processes of an app, by number, as they are at the moment of the call: an answer kept from
// earlier would name a process that has taken over a number since. Empty if there are none.
using AppProcesses = std::function<std::vector<std::int32_t>(const std::string& bundlePath)>;

// The apps of this desktop. `processesOf` is for a desktop that keeps no record of which process is
// whose; another one doesn't call it. Defined by the one platform that is linked in.
std::unique_ptr<RunningApps> hostRunningApps(AppProcesses processesOf);

} // namespace tavero
