#pragma once

#include "platform/sim/Scenario.h"

#include <map>
#include <string>
#include <vector>

namespace tavero {

// What runs on the simulated Mac on an idle afternoon: the system's daemons, those of the user, and
// a dozen apps with their helpers.
std::vector<Scenario::Process> idleProcesses();

// The bundles of these apps.
std::map<std::string, BundleNames> idleBundles();

} // namespace tavero
