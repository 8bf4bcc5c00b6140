#include "platform/mac/MacNetwork.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace tavero {

namespace {

// {CTL_NET, PF_ROUTE, 0, 0, NET_RT_IFLIST2, 0}
constexpr std::array interfaceList{4, 17, 0, 0, 6, 0};

// {CTL_NET, PF_LINK, NETLINK_GENERIC, IFMIB_IFDATA, index, IFDATA_GENERAL}
constexpr std::array<int, 6> interfaceData(std::uint32_t index) {
    return {4, 18, 0, 2, static_cast<int>(index), 1};
}

// How far a counter went on. One of 32 bits wraps; another that stepped back began again from 0.
std::uint64_t gain(std::uint64_t now, std::uint64_t before, bool wraps) {
    if (wraps) return static_cast<std::uint32_t>(now - before);
    return now >= before ? now - before : now;
}

} // namespace

void MacNetwork::Interface::add(const Reading& reading) {
    // The two kinds of counters don't compare: a change of kind only sets where to go on from.
    if (reading.wraps == last.wraps) {
        const bool wrapped = reading.wraps && isPresent && reading.index == last.index;
        const auto add = [&](std::uint64_t InterfaceCounters::*bytes) {
            total.*bytes = saturatingSum(
                total.*bytes, gain(reading.counters.*bytes, last.counters.*bytes, wrapped));
        };
        add(&InterfaceCounters::bytesIn);
        add(&InterfaceCounters::bytesOut);
    }
    last = reading;
    isPresent = true;
}

MacNetwork::MacNetwork(std::shared_ptr<MacKernel> kernel) : kernel_(std::move(kernel)) {}

std::optional<std::vector<InterfaceCounters>> MacNetwork::interfaces() {
    const std::optional<std::vector<std::byte>> list = readList();
    if (!list) return std::nullopt;
    std::map<std::string, Reading> readings;
    for (const InterfaceMessage& message : parseInterfaceList(*list)) {
        std::optional<std::string> name = kernel_->interfaceName(message.index);
        if (name && name->starts_with("en")) readings.emplace(std::move(*name), read(message));
    }

    for (auto& [name, interface] : interfaces_)
        if (!readings.contains(name)) interface.isPresent = false;
    for (const auto& [name, reading] : readings) {
        // What a new one counted so far is its total.
        const auto [entry, isNew] = interfaces_.try_emplace(name);
        if (isNew) entry->second.last.wraps = reading.wraps;
        entry->second.add(reading);
    }

    std::vector<InterfaceCounters> counters;
    for (const auto& [name, interface] : interfaces_) counters.push_back(interface.total);
    return counters;
}

std::optional<std::vector<std::byte>> MacNetwork::readList() {
    std::size_t size = 0;
    if (kernel_->sysctl(interfaceList, nullptr, size) != 0 || size == 0) return std::nullopt;
    std::vector<std::byte> list(size);
    if (kernel_->sysctl(interfaceList, list.data(), size) != 0) return std::nullopt;
    list.resize(std::min(size, list.size()));
    return list;
}

MacNetwork::Reading MacNetwork::read(const InterfaceMessage& message) {
    std::array<std::byte, 256> buffer{}; // the answer has 180
    std::size_t size = buffer.size();
    if (kernel_->sysctl(interfaceData(message.index), buffer.data(), size) == 0) {
        const auto data = std::span(buffer).first(std::min(size, buffer.size()));
        if (const auto counters = parseInterfaceData(data))
            return {.index = message.index, .wraps = false, .counters = *counters};
    }
    return {.index = message.index, .wraps = true, .counters = message.counters};
}

} // namespace tavero
