#pragma once

#include "records/ProcessSample.h"
#include "records/SystemActivity.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavero {

// The busiest process of the operating system, if by itself it uses at least
// SystemActivity::unusualCPU; the first one of equals. Absent otherwise.
std::optional<SystemActivity> unusualActivity(std::span<const ProcessSample> samples);

// What a system process does, in plain words; its own name if that is not known.
std::string describeSystemProcess(std::string_view process);

} // namespace tavero
