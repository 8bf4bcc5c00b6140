#include "monitor/Tops.h"

#include "presentation/NumberText.h"

#include <algorithm>

namespace tavero {

namespace {

constexpr double leastCPU = 0.01;
constexpr std::string_view systemFolder = "/System/Library/";

} // namespace

Tops tops(const std::vector<AppUsage>& apps) {
    double cpu = leastCPU;
    std::uint64_t memory = 0;
    for (const AppUsage& app : apps) {
        cpu = std::max(cpu, known(app.cpu).value_or(0));
        memory = std::max(memory, app.memory);
    }
    return {cpu, memory < 2 ? 1.0 : static_cast<double>(memory)};
}

std::vector<AppUsage> usingTheMost(const LiveSnapshot& snapshot) {
    const std::size_t cores = snapshot.cpu ? snapshot.cpu->perCore.size() : 0;
    const std::uint64_t total = snapshot.memory ? snapshot.memory->total : 0;
    const auto allCores = static_cast<double>(std::max<std::size_t>(cores, 1));
    const auto allMemory = static_cast<double>(std::max<std::uint64_t>(total, 1));
    const auto share = [&](const AppUsage& app) {
        return std::max(known(app.cpu).value_or(0) / allCores,
                        static_cast<double>(app.memory) / allMemory);
    };

    std::vector<AppUsage> apps;
    for (const AppUsage& app : snapshot.apps)
        if (!app.bundlePath || !app.bundlePath->starts_with(systemFolder)) apps.push_back(app);
    std::stable_sort(apps.begin(), apps.end(),
                     [&](const AppUsage& a, const AppUsage& b) { return share(a) > share(b); });
    return apps;
}

bool isTavero(const AppUsage& row, std::string_view ownBundlePath) {
    return row.bundlePath == ownBundlePath;
}

} // namespace tavero
