#pragma once

#include "presentation/Format.h"
#include "presentation/Metric.h"
#include "records/LiveSnapshot.h"

#include <string>
#include <string_view>

namespace tavero {

// The value of a metric as its item in the menu bar reads: "47%", "7.6 GB". A placeholder if there
// is none.
std::string menuBarValue(Metric metric, const LiveSnapshot& snapshot, const Format& format);

// The same in as few letters as make sense below the metric's name: "47", "7.6", "494G".
std::string shortMenuBarValue(Metric metric, const LiveSnapshot& snapshot, const Format& format);

// The two rows of the network's item: "↑ 12K" and "↓ 2.4M".
struct NetworkRows {
    std::string up;
    std::string down;

    bool operator==(const NetworkRows&) const = default;
};

NetworkRows networkRows(const LiveSnapshot& snapshot, const Format& format);

// The small name over a value or a graph: "MEM". What the machine runs on decides on that of power.
std::string_view smallName(Metric metric, const LiveSnapshot& snapshot);

// What a screen reader says: "Memory 7.6 GB", "Network up 12K, down 2.4M".
std::string spokenText(Metric metric, const LiveSnapshot& snapshot, const Format& format);

// The text with every digit replaced by "8". Widths are measured on that, so that a number that
// changes does not move what stands beside it.
std::string digitsAsEights(std::string text);

} // namespace tavero
