#pragma once

#include "platform/sim/Scenario.h"
#include "platform/sim/SimState.h"

namespace tavero {

// The sound that a scenario begins with.
SimAudio simAudio();
// What it tells of sound at this time, put into a state whose processes and Bluetooth devices are
// those of then. What it doesn't tell stays as it is.
void moveAudio(SimState& state, const Scenario& scenario, double elapsed);

} // namespace tavero
