#pragma once

#include "network/PathMonitor.h"
#include "platform/ConnectionSource.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace tavero {

// What a path is called. Where it uses several interfaces, Wi-Fi goes before a wire, and a wire
// before cellular.
ConnectionKind connectionKind(const PathState& path);

// The kind of the path right now, kept from a monitor's notices.
class NetworkPath final : public ConnectionSource {
  public:
    explicit NetworkPath(std::unique_ptr<PathMonitor> monitor);

    // The first call starts the monitor.
    ConnectionKind current() override;

  private:
    // Shared with the monitor, which may still be calling while this ends.
    std::shared_ptr<std::atomic<ConnectionKind>> kind_ =
        std::make_shared<std::atomic<ConnectionKind>>(ConnectionKind::other);
    std::unique_ptr<PathMonitor> monitor_;
    std::once_flag started_;
};

} // namespace tavero
