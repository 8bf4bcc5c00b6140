#pragma once

#include "apps/AppGroup.h"
#include "records/AppIdentity.h"
#include "records/ProcessSample.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tavero::AppGrouping {

// From the processes of a pass to one group an app, sorted by CPU, busiest first. Background tools
// in an app maker's support folder join that app, and apps that show the same name join each other.
// The groups borrow from `samples`. `nameFor` is asked up to twice for each identity.
std::vector<AppGroup> group(std::span<const ProcessSample> samples,
                            const std::function<const std::string&(const AppIdentity&)>& nameFor);

} // namespace tavero::AppGrouping
