#include "platform/linux/network/LinuxWiFi.h"

#include "platform/linux/network/LinuxInterfaceKind.h"
#include "platform/linux/network/Nl80211Link.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// Belongs to the call that goes on, whatever becomes of the source.
struct LinuxWiFi::Look {
    OpenNetlink open;
    std::optional<WiFiLink> link;

    void read() {
        const std::unique_ptr<NetlinkChannel> channel = open(NETLINK_GENERIC, 0);
        link = channel ? readWiFiLink(*channel) : std::nullopt;
    }
};

LinuxWiFi::LinuxWiFi(const std::filesystem::path& root, OpenNetlink open,
                     std::chrono::milliseconds limit)
    : interfaces_(root / "sys/class/net"),
      look_(std::make_shared<Look>(Look{.open = std::move(open)})), calls_(limit) {}

LinuxWiFi::~LinuxWiFi() = default;

std::optional<WiFiLink> LinuxWiFi::link() {
    if (interfaces_.changed()) {
        const std::vector<std::string> names = interfaces_.names();
        hasInterface_ = std::any_of(names.begin(), names.end(), [this](const std::string& name) {
            return isWiFi(interfaces_.path() / name);
        });
    }
    if (!hasInterface_) return std::nullopt;
    if (calls_.run([look = look_] { look->read(); })) last_ = look_->link;
    return last_;
}

} // namespace tavero
