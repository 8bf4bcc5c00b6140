#pragma once

#include "platform/linux/BoundedCalls.h"
#include "platform/linux/hardware/NvmlSession.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Asks NVIDIA's library and waits only so long, since a driver that starts a device takes seconds.
class NvmlWorker {
  public:
    NvmlWorker(std::string library, std::chrono::milliseconds limit);

    // As NvmlSession::read(). The latest answer there is, be it to an earlier question; absent
    // until the first.
    std::optional<NvmlAnswer> ask(const std::vector<std::string>& addresses, std::uint64_t now);

  private:
    // Outlives this object for as long as the driver hangs.
    struct Conversation;

    std::shared_ptr<Conversation> conversation_;
    bool hasAsked_ = false; // for anything
    std::optional<NvmlAnswer> last_;
    BoundedCalls calls_;
};

} // namespace tavero
