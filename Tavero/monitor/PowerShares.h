#pragma once

#include "records/AppUsage.h"

#include <optional>
#include <vector>

namespace tavero {

// The rows with their estimated `watts`: the system's, shared out by what each app uses of the CPU
// and the GPU. A child gets what its own use is worth, out of its app's part. Without a draw, or
// with nothing that uses it, the rows stay as they are.
std::vector<AppUsage> withWatts(std::vector<AppUsage> apps, std::optional<double> systemWatts);

} // namespace tavero
