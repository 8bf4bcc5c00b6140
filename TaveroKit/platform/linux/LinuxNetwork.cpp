#include "platform/linux/LinuxNetwork.h"

#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <system_error>

namespace tavero {

namespace fs = std::filesystem;

LinuxNetwork::LinuxNetwork(const fs::path& root) : folder_(root / "sys/class/net") {}

std::optional<std::vector<InterfaceCounters>> LinuxNetwork::interfaces() {
    if (folder_.changed()) findInterfaces();
    if (!folder_.isReadable()) return std::nullopt;
    std::vector<InterfaceCounters> counters;
    counters.reserve(interfaces_.size());
    for (Interface& interface : interfaces_) {
        if (interface.files) {
            update(interface.received, interface.files->received);
            update(interface.sent, interface.files->sent);
        }
        counters.push_back(
            {.bytesIn = interface.received.total(), .bytesOut = interface.sent.total()});
    }
    return counters;
}

void LinuxNetwork::update(MonotonicCounter& counter, KeptFile& file) {
    const auto text = file.read(buffer_);
    if (const auto bytes = text ? TextCursor(*text).number() : std::nullopt) counter.update(*bytes);
}

void LinuxNetwork::findInterfaces() {
    for (Interface& interface : interfaces_) interface.files.reset();
    for (const std::string& name : folder_.names()) {
        const fs::path device = folder_.path() / name;
        std::error_code error;
        if (!fs::is_symlink(device / "device", error)) continue;
        const std::string index = readAttribute(device / "ifindex");
        entry(name, TextCursor(index).number().value_or(0)).files =
            Files{.received = KeptFile(device / "statistics/rx_bytes"),
                  .sent = KeptFile(device / "statistics/tx_bytes")};
    }
}

LinuxNetwork::Interface& LinuxNetwork::entry(const std::string& name, std::uint64_t index) {
    // Neither a new name for the same interface nor a new interface of the same name counts twice.
    if (const auto same =
            std::find_if(interfaces_.begin(), interfaces_.end(),
                         [&](const Interface& known) { return index && known.index == index; });
        same != interfaces_.end()) {
        same->name = name;
        return *same;
    }
    if (const auto successor = std::find_if(
            interfaces_.begin(), interfaces_.end(),
            [&](const Interface& known) { return known.name == name && !known.files; });
        successor != interfaces_.end()) {
        if (index) {
            successor->received.startOver();
            successor->sent.startOver();
        }
        successor->index = index;
        return *successor;
    }
    return interfaces_.emplace_back(Interface{.name = name, .index = index});
}

} // namespace tavero
