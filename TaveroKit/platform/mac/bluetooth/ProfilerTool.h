#pragma once

#include "platform/BluetoothReportSource.h"
#include "platform/mac/bluetooth/ChildOutput.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// The report of the Mac's profiler: what `/usr/sbin/system_profiler SPBluetoothDataType -json`
// prints. Absent if it can't be run or takes far too long.
class ProfilerTool final : public BluetoothReportSource {
  public:
    static constexpr ChildLimits usualLimits{.bytes = 1 << 20, .time = std::chrono::seconds(20)};

    // Once `isCancelled` is true a run ends soon.
    explicit ProfilerTool(std::shared_ptr<const std::atomic<bool>> isCancelled,
                          std::string path = "/usr/sbin/system_profiler",
                          const ChildLimits& limits = usualLimits);

    std::optional<std::string> report() override;

  private:
    std::shared_ptr<const std::atomic<bool>> isCancelled_;
    std::string path_;
    ChildLimits limits_;
};

} // namespace tavero
