#pragma once

#include "platform/ProcessSource.h"
#include "platform/mac/MacProcessTable.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavero {

// The processes of a Mac: proc_listallpids, proc_pid_rusage, proc_pidpath and, for the threads,
// proc_pidinfo. The Mac tells everybody the path of each process, but its usage only to the user
// that it belongs to. Times are in ticks of mach_absolute_time.
class MacProcesses final : public ProcessSource {
  public:
    explicit MacProcesses(std::shared_ptr<MacProcessTable> table);

    std::span<const ProcessCounters> processes(bool threads) override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::uint64_t clock() override { return table_->absoluteTime(); }
    Timebase timebase() override { return timebase_; }

  private:
    void listPids();
    ProcessCounters counters(std::int32_t pid, bool threads);

    std::shared_ptr<MacProcessTable> table_;
    Timebase timebase_;
    std::vector<std::int32_t> pids_; // kept from call to call for its room
    std::vector<ProcessCounters> processes_;
};

} // namespace tavero
