#pragma once

#include "platform/NetworkSource.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/KeptFile.h"
#include "platform/linux/MonotonicCounter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Interface counters from /sys/class/net/*/statistics. Only interfaces with a device behind them
// count: cards, sticks, tethered phones; no loopback, bridge, tunnel, bond, VLAN or container's
// end, whose bytes pass through one of those or stay inside. The folder is listed on every pass; an
// interface that leaves keeps its last count, and one that starts over makes no step back.
class LinuxNetwork : public NetworkSource {
  public:
    explicit LinuxNetwork(const std::filesystem::path& root);

    std::optional<std::vector<InterfaceCounters>> interfaces() override;

  private:
    struct Files {
        KeptFile received;
        KeptFile sent;
    };
    struct Interface {
        std::string name;
        std::uint64_t index = 0;    // the kernel's number, which survives a change of name
        std::optional<Files> files; // absent once it left
        MonotonicCounter received;
        MonotonicCounter sent;
    };
    void findInterfaces();
    Interface& entry(const std::string& name, std::uint64_t index);
    void update(MonotonicCounter& counter, KeptFile& file);

    KeptDirectory folder_;
    std::vector<Interface> interfaces_;
    std::vector<char> buffer_;
};

} // namespace tavero
