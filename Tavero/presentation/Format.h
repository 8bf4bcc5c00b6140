#pragma once

#include "records/PowerSnapshot.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// A number as it reads, and the unit that stands beside it.
struct Measure {
    std::string value;
    std::string unit;

    std::string joined(std::string_view between = " ") const;

    bool operator==(const Measure&) const = default;
};

// How numbers read: fixed rounding and units, and what the user chose among them. Digits are ASCII
// and the decimal separator is a dot, in every locale. A value that is NaN or infinite reads as the
// placeholder.
struct Format {
    bool networkBits = false; // rates in bits per second, those of disks as well
    bool fahrenheit = false;
    std::string groupSeparator = ","; // between thousands, as the locale has it

    // Memory, in MB and GB of 1024: "824 MB", "2.4 GB". No larger unit.
    std::string bytes(std::uint64_t bytes) const;
    // Disks and totals, in GB and TB of 1000.
    Measure capacity(std::uint64_t bytes) const;
    // From bytes a second. No unit below kilo, so nothing reads "0 KB/s".
    Measure rate(double bytesPerSecond) const;
    // The same for tight spaces: "2.4M", "830K".
    std::string shortRate(double bytesPerSecond) const;
    // "59 m", "2 h 5 m".
    std::string duration(std::int64_t minutes) const;
    // What the battery does and for how long, in one line.
    std::string batteryStatus(const BatterySnapshot& battery) const;
    // An absent temperature keeps its unit.
    Measure temperature(std::optional<double> celsius) const;
    // The fastest fan in few letters: "2.4k rpm"; "No fans" if there are none.
    std::string fans(const std::vector<double>& rpm) const;

    bool operator==(const Format&) const = default;
};

// Absent if there is no fan that tells its speed.
std::optional<double> fastestFan(const std::vector<double>& rpm);

} // namespace tavero
