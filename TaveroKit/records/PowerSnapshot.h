#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tavero {

struct BatterySnapshot {
    std::int64_t percent = 0; // charge, 0 to 100
    bool isCharging = false;
    bool onExternalPower = false;
    // Absent while the system still estimates, and when the direction does not apply.
    std::optional<std::int64_t> minutesToEmpty;
    std::optional<std::int64_t> minutesToFull;
    std::optional<std::int64_t> cycleCount;
    std::optional<double> health; // fraction of the charge it held when new
    std::optional<double> temperatureCelsius;
    std::optional<double> watts; // positive while drawn from the battery, negative while it charges
    std::optional<double> remainingWattHours;
    bool currentIsStale = false; // the reported current is not a live reading

    // Fills in `minutesToEmpty` from the whole system's draw when the battery itself gives none.
    void estimateTimeLeft(std::optional<double> systemWatts);

    bool operator==(const BatterySnapshot&) const = default;
};

// What the system management controller tells.
struct SMCSnapshot {
    std::vector<double> fanRPM; // one entry a fan
    std::optional<double> systemWatts;
    std::optional<double> batteryWatts;
    std::optional<double> chargerWatts;

    bool operator==(const SMCSnapshot&) const = default;
};

} // namespace tavero
