#include "desktop/mac/MacBluetooth.h"
#include "platform/mac/bluetooth/ProfilerTool.h"
#include "time/ThreadWorker.h"

namespace tavero {

std::unique_ptr<BluetoothControl> hostBluetooth() {
    auto isCancelled = std::make_shared<std::atomic<bool>>(false);
    auto report = std::make_unique<ProfilerTool>(isCancelled);
    return std::make_unique<MacBluetooth>(std::move(report), hostBluetoothCalls(),
                                          std::make_unique<ThreadWorker>(), std::move(isCancelled));
}

} // namespace tavero
