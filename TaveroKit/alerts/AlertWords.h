#pragma once

#include "records/AppUsage.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Memory in units of 1024, disks in units of 1000, both with one decimal: "2.4 GB".
std::string memoryText(std::uint64_t bytes);
std::string diskText(double bytes);

// The first row that is an app or a tool; null if there is none.
const AppUsage* firstUserApp(const std::vector<AppUsage>& rows);

std::optional<std::string> nameOf(const AppUsage* app);
std::optional<std::string> bundleOf(const AppUsage* app);

} // namespace tavero
