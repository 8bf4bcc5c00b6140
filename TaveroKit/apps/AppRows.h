#pragma once

#include "apps/AppGroup.h"
#include "records/AppUsage.h"
#include "records/NetworkSnapshot.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tavero {

// Bytes a second over the network.
struct NetworkRate {
    double received = 0;
    double sent = 0;
};

// What a pass knows of a process or an app beyond the process samples.
struct UsageExtras {
    std::unordered_map<std::int32_t, double> gpuShares;         // by pid, fractions
    std::unordered_map<std::int32_t, NetworkRate> networkRates; // by pid
};
using NetworkTotals = std::unordered_map<AppIdentity, NetworkBytes>;

// The row of one app, with a child row for each process name inside it.
AppUsage usage(const AppGroup& group, const UsageExtras& extras, const NetworkTotals& totals);

// Of these rows the ones that use or used the network: most traffic now first, 15 at most.
std::vector<AppUsage> networkApps(std::vector<AppUsage> rows);

} // namespace tavero
