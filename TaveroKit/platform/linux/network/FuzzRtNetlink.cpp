#include "platform/linux/network/LinuxInterfaceKind.h"
#include "platform/linux/network/RtNetlinkRoutes.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace {

// A kernel that answers everything with the same bytes, once.
class Channel : public tavero::NetlinkChannel {
  public:
    explicit Channel(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}

    bool send(tavero::NetlinkBytes) override {
        isWaiting_ = true;
        return true;
    }
    std::optional<tavero::NetlinkBytes> receive() override {
        if (!std::exchange(isWaiting_, false)) return std::nullopt;
        return bytes_;
    }
    bool drain() override { return false; }

  private:
    std::vector<std::byte> bytes_;
    bool isWaiting_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    Channel channel({bytes.begin(), bytes.end()});
    if (const auto ways = tavero::readWaysOut(channel))
        if (ways->defaults.size() > 64 || ways->gateways.size() > 64) std::abort();
    tavero::WaysOut ways;
    tavero::addRoute(ways, bytes);
    const bool isOffline =
        tavero::connectionKind(ways, "/nowhere") == tavero::ConnectionKind::offline;
    if (isOffline != ways.defaults.empty()) std::abort();
    return 0;
}
