#pragma once

#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tavero {

// The headline of a metric: the big number, the unit beside it, the small line below. The note may
// be empty.
struct Reading {
    std::string value;
    std::string unit;
    std::string note;

    bool operator==(const Reading&) const = default;
};

Reading reading(Metric metric, const LiveSnapshot& snapshot, const Format& format);

// What the top of a disk or network graph stands for, in bytes a second: "2 MB/s", "1.5 MB/s".
std::string graphLabel(double bytesPerSecond, const Format& format);

// What the machine draws, in watts. On battery the battery's own figure wins, on the charger the
// machine's total. Absent if neither is known.
std::optional<double> powerDraw(const LiveSnapshot& snapshot);

// Free space on the volume at "/", in bytes. Reserved blocks can make the system's figure negative;
// that is no space left.
std::optional<std::uint64_t> freeSpace(const LiveSnapshot& snapshot);

} // namespace tavero
