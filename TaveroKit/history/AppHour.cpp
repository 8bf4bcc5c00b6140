#include "history/AppHour.h"

#include <cmath>

namespace tavero {

namespace {

AppBucket& bucketOf(std::map<std::string, AppBucket>& apps, const AppUsage& app) {
    const auto [entry, isNew] = apps.try_emplace(app.id());
    if (isNew) {
        entry->second.name = app.name;
        entry->second.bundlePath = app.bundlePath;
    }
    return entry->second;
}

// One bad figure must not spoil the sum of an hour.
void add(double& sum, double value) {
    if (std::isfinite(value)) sum += value;
}

} // namespace

void AppHour::add(const LiveSnapshot& snapshot, double seconds) {
    for (const AppUsage& app : snapshot.apps) {
        AppBucket& bucket = bucketOf(apps, app);
        tavero::add(bucket.cpuSeconds, app.cpu * seconds);
        bucket.memorySum += static_cast<double>(app.memory);
        bucket.samples += 1;
        tavero::add(bucket.diskWritten, app.diskWriteRate * seconds);
    }
    for (const AppUsage& app : snapshot.networkApps) {
        if (!(app.networkInRate + app.networkOutRate > 0)) continue;
        AppBucket& bucket = bucketOf(apps, app);
        tavero::add(bucket.networkIn, app.networkInRate * seconds);
        tavero::add(bucket.networkOut, app.networkOutRate * seconds);
    }
}

} // namespace tavero
