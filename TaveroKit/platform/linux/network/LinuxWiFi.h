#pragma once

#include "platform/ConnectionSource.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/network/NetlinkChannel.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace tavero {

// The Wi-Fi link from the kernel's own configuration interface (nl80211). It isn't asked where
// /sys/class/net has no Wi-Fi interface. A driver may have to ask its firmware: beyond the limit
// the link is as it was last read.
class LinuxWiFi : public WiFiSource {
  public:
    LinuxWiFi(const std::filesystem::path& root, OpenNetlink open, std::chrono::milliseconds limit);
    ~LinuxWiFi() override;

    std::optional<WiFiLink> link() override;

  private:
    struct Look;

    KeptDirectory interfaces_;
    bool hasInterface_ = false;
    std::shared_ptr<Look> look_;
    std::optional<WiFiLink> last_;
    BoundedCalls calls_;
};

} // namespace tavero
