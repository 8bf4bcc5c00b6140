#pragma once

#include "presentation/Format.h"
#include "records/AppUsage.h"
#include "text/TextPen.h"

#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// Apps below each other with their figures beside them, under a title. No line is wider than
// `columns`; what has no room gives way from the right.

// What apps use of the machine, each with what there is to say of it. The GPU and the power have a
// column if any of the apps has a figure.
std::vector<std::string> usageTable(std::string_view title, const std::vector<AppUsage>& apps,
                                    const Format& format, const TextPen& pen, int columns);

// What apps move over the network: now, and since the program started.
std::vector<std::string> networkTable(std::string_view title, const std::vector<AppUsage>& apps,
                                      const Format& format, const TextPen& pen, int columns);

} // namespace tavero
