#include "monitor/AppLogs.h"

#include "monitor/Rolling.h"
#include "presentation/NumberText.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <limits>

namespace tavero {

namespace {

constexpr std::chrono::seconds usageSpan{60};
constexpr std::chrono::seconds memorySpan{3600};
constexpr double memoryInterval = 60;              // seconds between two entries
constexpr double leastGrowthAge = 300;             // seconds of log that a change needs
constexpr std::uint64_t leastGrowth = 500'000'000; // bytes

template <typename Entry>
std::optional<double> mean(const std::vector<Entry>& entries) {
    if (entries.empty()) return std::nullopt;
    double sum = 0;
    for (const Entry& entry : entries) sum += entry.value;
    return known(sum / static_cast<double>(entries.size()));
}

std::int64_t signedDifference(std::uint64_t now, std::uint64_t before) {
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    const auto size =
        static_cast<std::int64_t>(std::min(now > before ? now - before : before - now, most));
    return now > before ? size : -size;
}

} // namespace

void AppLogs::recordCPU(const LiveSnapshot& snapshot) {
    ++pass_;
    for (const AppUsage& app : snapshot.apps) {
        record(app, snapshot.date);
        for (const AppUsage& child : app.children) record(child, snapshot.date);
    }
    std::erase_if(usage_, [this](const auto& entry) { return entry.second.pass != pass_; });
}

void AppLogs::record(const AppUsage& row, Date date) {
    Usage& usage = usage_[row.id()];
    usage.pass = pass_;
    if (known(row.cpu)) appendRolling(usage.cpu, {date, row.cpu}, usageSpan);
    if (known(row.gpu)) appendRolling(usage.gpu, {date, *row.gpu}, usageSpan);
}

void AppLogs::recordMemory(const LiveSnapshot& snapshot) {
    const Date date = snapshot.date;
    for (const AppUsage& app : snapshot.apps) {
        std::vector<Footprint>& log = memory_[app.id()];
        const double age = log.empty() ? memoryInterval : secondsBetween(log.back().time, date);
        // A negative age is that of an entry from before the clock was set back.
        if (age >= 0 && age < memoryInterval) continue;
        appendRolling(log, {date, app.memory}, memorySpan);
    }
    // Every app of this pass has an entry of the last minute and stays.
    std::erase_if(memory_,
                  [&](const auto& entry) { return date - entry.second.back().time >= memorySpan; });
}

AppUsage AppLogs::withAverages(AppUsage row, std::uint64_t physicalMemory, Date now) const {
    addAverages(row, physicalMemory);
    addGrowth(row, now);
    for (AppUsage& child : row.children) addAverages(child, physicalMemory);
    return row;
}

void AppLogs::addAverages(AppUsage& row, std::uint64_t physicalMemory) const {
    const auto found = usage_.find(row.id());
    row.cpuAverage = found == usage_.end() ? std::nullopt : mean(found->second.cpu);
    if (found != usage_.end() && !found->second.gpu.empty()) {
        const std::vector<Share>& gpu = found->second.gpu;
        row.gpuAverage = mean(gpu);
        row.gpuPeak = std::max_element(gpu.begin(), gpu.end(), [](const Share& a, const Share& b) {
                          return a.value < b.value;
                      })->value;
    }
    row.memoryShare = static_cast<double>(row.memory) /
                      static_cast<double>(std::max<std::uint64_t>(physicalMemory, 1));
}

void AppLogs::addGrowth(AppUsage& row, Date now) const {
    const auto found = memory_.find(row.id());
    if (found == memory_.end()) return;
    const std::vector<Footprint>& log = found->second;
    if (secondsBetween(log.front().time, now) < leastGrowthAge) return;
    row.memoryChange = signedDifference(row.memory, log.front().bytes);
    if (row.note) return;

    // The earliest of the smallest.
    const auto [low, peak] =
        std::minmax_element(log.begin(), log.end(), [](const Footprint& a, const Footprint& b) {
            return a.bytes < b.bytes;
        });
    if (row.memory < saturatingSum(low->bytes, leastGrowth) || row.memory < peak->bytes) return;
    const auto minutes = static_cast<std::int64_t>(secondsBetween(low->time, now) / 60);
    row.note = "growing for " + std::to_string(std::max<std::int64_t>(minutes, 1)) + " min";
}

} // namespace tavero
