#include "records/PowerSnapshot.h"

namespace tavero {

namespace {
// A draw below this can't be a running machine's; dividing by it would promise days.
constexpr double leastPlausibleWatts = 1.0;
constexpr double longestEstimateMinutes = 1e9;
} // namespace

void BatterySnapshot::estimateTimeLeft(std::optional<double> systemWatts) {
    if (onExternalPower || minutesToEmpty || !remainingWattHours || !systemWatts) return;
    if (!(*systemWatts > leastPlausibleWatts)) return;
    const double minutes = *remainingWattHours / *systemWatts * 60;
    // Not representable as whole minutes: a broken reading, and no estimate.
    if (!(minutes > -longestEstimateMinutes && minutes < longestEstimateMinutes)) return;
    minutesToEmpty = static_cast<std::int64_t>(minutes);
    if (currentIsStale) watts = systemWatts;
}

} // namespace tavero
