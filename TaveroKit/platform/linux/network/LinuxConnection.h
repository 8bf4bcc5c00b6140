#pragma once

#include "platform/ConnectionSource.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/network/NetlinkChannel.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace tavero {

// The kind of connection, from the default routes (rtnetlink) and what /sys/class/net tells of
// their interfaces. The routes are read again only after the kernel gave notice of a change; a read
// beyond the limit leaves the kind as it was and is repeated. Stays `other` where the system allows
// no such question.
class LinuxConnection : public ConnectionSource {
  public:
    LinuxConnection(const std::filesystem::path& root, OpenNetlink open,
                    std::chrono::milliseconds limit);
    ~LinuxConnection() override;

    ConnectionKind current() override;

  private:
    struct Look;

    std::shared_ptr<Look> look_;
    std::unique_ptr<NetlinkChannel> notices_; // null until the system lets us listen
    bool isStale_ = true;
    ConnectionKind kind_ = ConnectionKind::other;
    BoundedCalls calls_;
};

} // namespace tavero
