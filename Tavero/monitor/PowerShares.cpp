#include "monitor/PowerShares.h"

#include "presentation/NumberText.h"

namespace tavero {

namespace {

// A whole GPU draws about what two cores do.
constexpr double gpuWeight = 2;

double weight(const AppUsage& row) {
    return known(row.cpu).value_or(0) + gpuWeight * known(row.gpu).value_or(0);
}

} // namespace

std::vector<AppUsage> withWatts(std::vector<AppUsage> apps, std::optional<double> systemWatts) {
    const double watts = known(systemWatts).value_or(0);
    double sum = 0;
    for (const AppUsage& app : apps) sum += weight(app);
    if (!(watts > 0) || !(sum > 0) || !known(sum)) return apps;

    const auto share = [&](const AppUsage& row) { return known(weight(row) * watts / sum); };
    for (AppUsage& app : apps) {
        app.watts = share(app);
        for (AppUsage& child : app.children) child.watts = share(child);
    }
    return apps;
}

} // namespace tavero
