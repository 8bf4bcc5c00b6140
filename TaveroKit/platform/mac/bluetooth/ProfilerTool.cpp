#include "platform/mac/bluetooth/ProfilerTool.h"

#include <utility>

namespace tavero {

ProfilerTool::ProfilerTool(std::shared_ptr<const std::atomic<bool>> isCancelled, std::string path,
                           const ChildLimits& limits)
    : isCancelled_(std::move(isCancelled)), path_(std::move(path)), limits_(limits) {}

std::optional<std::string> ProfilerTool::report() {
    return childOutput({path_, "SPBluetoothDataType", "-json"}, limits_, *isCancelled_);
}

} // namespace tavero
