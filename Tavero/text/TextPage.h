#pragma once

#include "monitor/Graphs.h"
#include "presentation/Format.h"
#include "presentation/MetricStats.h"
#include "records/LiveSnapshot.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// How the terminal can show it.
struct TextStyle {
    int columns = 80;
    bool isColored = false; // with the escape codes for bold, dim and the eight basic colours
};

// The live readings as lines of UTF-8 text, without line ends, none wider than the terminal.
// `snapshot` is absent until the first pass.
std::vector<std::string> textPage(const std::optional<LiveSnapshot>& snapshot, const Graphs& graphs,
                                  const Format& format, const Surroundings& surroundings,
                                  const TextStyle& style);

} // namespace tavero
