#pragma once

#include "records/Date.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// One day of a daily series.
struct DayValue {
    Date day{}; // its start; every day before today counts as 24 hours
    double value = 0;

    bool operator==(const DayValue&) const = default;
};

// What one app took in a period. Its id identifies it.
struct AppTotal {
    std::string id; // AppIdentity::id
    std::string name;
    std::optional<std::string> bundlePath; // absent for tools and the system
    double cpuSeconds = 0;
    double averageMemory = 0; // bytes
    double diskWritten = 0;   // bytes
    double networkIn = 0;     // bytes
    double networkOut = 0;    // bytes

    bool operator==(const AppTotal&) const = default;
};

// How often a Bluetooth device was charged.
struct DeviceCharges {
    std::string name;
    std::int64_t charges = 0; // at least 1 in a report

    bool operator==(const DeviceCharges&) const = default;
};

// The machine's last days, as the history knows them: figures only, no words. A period ends with
// the current, unfinished day.
struct InsightsReport {
    double daysOfData = 0;                   // since the oldest minute of the whole history
    std::optional<double> averageCPU;        // fraction of the machine; absent with no data
    std::optional<double> averageMemoryUsed; // bytes; absent with no data
    std::optional<double> energyWattHours;   // absent if no minute knows its power
    double diskWritten = 0;                  // bytes
    // One entry for each day of the period, the oldest first; 0 for a day without data.
    std::vector<DayValue> dailyCPU;
    std::vector<DayValue> dailyMemory;
    std::vector<DayValue> dailyEnergy;  // watt hours
    std::vector<DayValue> dailyWritten; // bytes
    std::vector<AppTotal> apps;         // 10 at most, most CPU time first
    // The mean load of each local hour of the day, from midnight on; absent where no minute fell.
    std::array<std::optional<double>, 24> cpuByHour;
    std::optional<DayValue> busiestDay;       // of dailyCPU; absent if no day has a load
    double hoursAwake = 0;                    // hours with samples
    std::vector<DeviceCharges> deviceCharges; // most charges first, then by name
    std::vector<AppTotal> networkApps;        // 10 at most, most traffic first

    bool operator==(const InsightsReport&) const = default;
};

} // namespace tavero
