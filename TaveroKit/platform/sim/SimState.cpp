#include "platform/sim/SimState.h"

#include "platform/mac/SwapUsage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <set>
#include <span>

namespace tavero {

namespace {

template <typename Value>
std::vector<std::byte> bytesOf(const Value& value) {
    const auto bytes = std::as_bytes(std::span(&value, 1));
    return {bytes.begin(), bytes.end()};
}

template <typename Value>
void put(std::vector<std::byte>& bytes, std::size_t at, const Value& value) {
    const std::vector<std::byte> added = bytesOf(value);
    std::copy(added.begin(), added.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

// An if_msghdr2: what a program that is not the system's own gets to see.
std::vector<std::byte> interfaceMessage(const SimInterface& interface) {
    constexpr std::uint16_t length = 160;
    constexpr std::uint8_t interfaceInfo2 = 18;
    const auto cut = [](std::uint64_t bytes) { return bytes & 0xFFFFFC00u; };
    std::vector<std::byte> message(length);
    put(message, 0, length);
    put(message, 3, interfaceInfo2);
    put(message, 12, static_cast<std::uint16_t>(interface.index));
    put(message, 96, cut(interface.counters.bytesIn));
    put(message, 104, cut(interface.counters.bytesOut));
    return message;
}

// An ifmibdata.
std::vector<std::byte> interfaceData(const SimInterface& interface) {
    std::vector<std::byte> data(180);
    put(data, 116, interface.counters.bytesIn);
    put(data, 124, interface.counters.bytesOut);
    return data;
}

std::int32_t signedBits(std::uint32_t count) { return static_cast<std::int32_t>(count); }

} // namespace

void SimState::setTicks(const std::vector<CpuTicks>& ticks) {
    processorLoad.emplace();
    processorLoad->cpuCount = static_cast<std::uint32_t>(ticks.size());
    for (const CpuTicks& cpu : ticks)
        processorLoad->states.insert(processorLoad->states.end(),
                                     {signedBits(cpu.user), signedBits(cpu.system),
                                      signedBits(cpu.idle), signedBits(cpu.nice)});
}

void SimState::setSysctl(const std::string& name, std::int32_t value) {
    sysctls[name] = bytesOf(value);
}

void SimState::setSysctl(const std::string& name, std::int64_t value) {
    sysctls[name] = bytesOf(value);
}

void SimState::setMemory(const MemoryCounts& counts) {
    vmStatistics.emplace();
    const auto set = [&](VMWord at, std::uint64_t pages) {
        word(*vmStatistics, at) = static_cast<std::uint32_t>(pages);
    };
    set(VMWord::internal, counts.internal);
    set(VMWord::purgeable, counts.purgeable);
    set(VMWord::wire, counts.wired);
    set(VMWord::compressor, counts.compressor);
    set(VMWord::external, counts.external);
    pageSize = counts.pageSize;
    sysctls["vm.swapusage"] = bytesOf(SwapUsage{.total = counts.swapTotal,
                                                .available = counts.swapTotal - counts.swapUsed,
                                                .used = counts.swapUsed});
    setSysctl("hw.memsize", static_cast<std::int64_t>(counts.total));
    const auto setLevel = [&](const std::string& name, std::optional<std::int64_t> level) {
        sysctls.erase(name);
        if (level) setSysctl(name, static_cast<std::int32_t>(*level));
    };
    setLevel("kern.memorystatus_vm_pressure_level", counts.pressureLevel);
    setLevel("kern.memorystatus_level", counts.freeLevel);
}

void SimState::setDisks(const std::vector<DiskCounters>& disks) {
    std::vector<PropertyMap>& drivers = services["IOBlockStorageDriver"];
    drivers.clear();
    for (const DiskCounters& disk : disks) {
        // Only 64 signed bits wide in the registry.
        const PropertyMap statistics{
            {"Bytes (Read)", {static_cast<std::int64_t>(disk.bytesRead)}},
            {"Bytes (Write)", {static_cast<std::int64_t>(disk.bytesWritten)}}};
        drivers.push_back({{"Statistics", {statistics}}});
    }
}

void SimState::setInterfaces(const std::vector<SimInterface>& interfaces) {
    numberedSysctls.clear();
    interfaceNames.clear();
    std::vector<std::byte>& list = numberedSysctls[{4, 17, 0, 0, 6, 0}];
    for (const SimInterface& interface : interfaces) {
        const std::vector<std::byte> message = interfaceMessage(interface);
        list.insert(list.end(), message.begin(), message.end());
        numberedSysctls[{4, 18, 0, 2, static_cast<int>(interface.index), 1}] =
            interfaceData(interface);
        interfaceNames[interface.index] = interface.name;
    }
}

void SimState::setBootTime(Date date) {
    using std::chrono::seconds;
    const std::array<std::int64_t, 2> time{
        std::chrono::floor<seconds>(date.time_since_epoch()).count(), 0};
    sysctls["kern.boottime"] = bytesOf(time);
}

void SimState::setBundle(const std::string& path, const BundleNames& names) {
    PropertyMap& info = bundleInfo[path];
    info.clear();
    if (names.displayName) info["CFBundleDisplayName"] = {*names.displayName};
    if (names.name) info["CFBundleName"] = {*names.name};
}

void SimState::end(std::int32_t pid) {
    std::erase_if(processes, [&](const SimProcess& process) { return process.pid == pid; });
    audio.end({pid});
}

void SimState::quit(const std::string& bundlePath) {
    std::set<std::int32_t> ended;
    std::erase_if(processes, [&, inside = bundlePath + "/"](const SimProcess& process) {
        const bool isInside = process.path && process.path->starts_with(inside);
        if (isInside) ended.insert(process.pid);
        return isInside;
    });
    audio.end(ended);
}

SimState simLaptop() {
    constexpr std::uint64_t pages = simMemory / simPageSize;

    SimState state;
    state.setTicks(std::vector<CpuTicks>(8));
    state.setSysctl("hw.perflevel0.logicalcpu", std::int32_t{4});
    state.setSysctl("hw.perflevel1.logicalcpu", std::int32_t{4});
    state.setMemory({.pageSize = simPageSize,
                     .internal = pages / 4,
                     .wired = pages / 8,
                     .external = pages / 4,
                     .total = simMemory,
                     .pressureLevel = 1,
                     .freeLevel = 60});
    state.setDisks({{}});
    state.setInterfaces(
        {{.index = 1, .name = "lo0"}, {.index = 4, .name = "en0"}, {.index = 9, .name = "utun0"}});
    state.volumeSpaces["/"] = {.capacity = 494'384'795'648,
                               .availableForImportantUsage = 187'212'808'192,
                               .available = 171'798'691'840,
                               .name = "Macintosh HD"};
    state.volumes = {{.path = "/",
                      .name = "Macintosh HD",
                      .capacity = 494'384'795'648,
                      .available = 171'798'691'840,
                      .isInternal = true,
                      .isBrowsable = true}};
    state.connections.path = {.isSatisfied = true, .usesWiFi = true};
    state.connections.setSignal(-52);
    state.audio.devices = {simSpeakers(), simMicrophone()};
    state.audio.settle();
    state.setHardware({.cores = std::vector<double>(8, 0.03),
                       .gpuClients = {{.pid = 128, .name = "WindowServer", .nanoseconds = 1}}});
    return state;
}

} // namespace tavero
