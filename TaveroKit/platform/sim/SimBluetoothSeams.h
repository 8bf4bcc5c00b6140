#pragma once

#include "platform/BluetoothReportSource.h"
#include "platform/mac/bluetooth/MacBluetoothCalls.h"
#include "platform/sim/SimTimeline.h"

#include <memory>

namespace tavero {

// Bluetooth of the simulated Mac. Its calls answer from within; the user answers a prompt at once.
std::unique_ptr<BluetoothReportSource> simBluetoothReport(std::shared_ptr<SimTimeline> timeline);
std::unique_ptr<MacBluetoothCalls> simBluetoothCalls(std::shared_ptr<SimTimeline> timeline);

} // namespace tavero
