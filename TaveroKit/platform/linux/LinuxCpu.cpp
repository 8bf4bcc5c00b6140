#include "platform/linux/LinuxCpu.h"

#include "platform/linux/ProcStat.h"
#include "platform/linux/TextCursor.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace tavero {

namespace {

namespace fs = std::filesystem;

std::int64_t listed(const fs::path& list) { return parseCpuList(readAttribute(list)); }

// One figure a CPU that has one.
std::vector<std::uint64_t> capacities(const fs::path& folder) {
    std::vector<std::uint64_t> capacities;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!entry->path().filename().string().starts_with("cpu")) continue;
        const std::string text = readAttribute(entry->path() / "cpu_capacity");
        if (const auto capacity = TextCursor(text).number()) capacities.push_back(*capacity);
    }
    return capacities;
}

CoreKinds readCoreKinds(const fs::path& root) {
    const fs::path devices = root / "sys/devices";
    const CoreKinds hybrid{.performance = listed(devices / "cpu_core/cpus"),
                           .efficiency = listed(devices / "cpu_atom/cpus") +
                                         listed(devices / "cpu_lowpower/cpus")};
    if (hybrid.performance > 0 && hybrid.efficiency > 0) return hybrid;

    const std::vector<std::uint64_t> all = capacities(devices / "system/cpu");
    if (all.empty()) return {};
    const auto [least, most] = std::minmax_element(all.begin(), all.end());
    if (*least == *most) return {};
    const std::int64_t efficiency = std::count(all.begin(), all.end(), *least);
    return {.performance = std::ssize(all) - efficiency, .efficiency = efficiency};
}

// Differences of ticks are taken modulo 2^32, so the upper bits are of no use.
std::uint32_t low(const MonotonicCounter& counter) {
    return static_cast<std::uint32_t>(counter.total());
}

} // namespace

LinuxCpu::LinuxCpu(const fs::path& root)
    : stat_(root / "proc/stat"), loadAverage_(root / "proc/loadavg"),
      coreKinds_(readCoreKinds(root)) {}

std::optional<std::vector<CpuTicks>> LinuxCpu::ticks() {
    const std::optional<std::string_view> text = stat_.read(buffer_);
    if (!text) return std::nullopt;
    const std::vector<CpuTime> times = parseProcStat(*text);
    if (times.empty()) return std::nullopt;
    for (const CpuTime& time : times) {
        Counters& cpu = cpus_[time.number];
        cpu.user.update(time.user);
        cpu.system.update(time.system);
        cpu.idle.update(time.idle);
        cpu.nice.update(time.nice);
    }
    std::vector<CpuTicks> ticks;
    ticks.reserve(cpus_.size());
    for (const auto& [number, cpu] : cpus_)
        ticks.push_back({.user = low(cpu.user),
                         .system = low(cpu.system),
                         .idle = low(cpu.idle),
                         .nice = low(cpu.nice)});
    return ticks;
}

LoadAverage LinuxCpu::loadAverage() {
    const std::optional<std::string_view> text = loadAverage_.read(buffer_);
    return text ? parseLoadAverage(*text).value_or(LoadAverage{}) : LoadAverage{};
}

} // namespace tavero
