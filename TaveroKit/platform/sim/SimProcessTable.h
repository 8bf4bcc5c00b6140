#pragma once

#include "platform/mac/MacProcessTable.h"
#include "platform/sim/SimTimeline.h"

#include <memory>

namespace tavero {

// The process calls of the simulated Mac.
class SimProcessTable : public MacProcessTable {
  public:
    explicit SimProcessTable(std::shared_ptr<SimTimeline> timeline);

    int listAllPids(std::span<std::int32_t> pids) override;
    int usage(std::int32_t pid, Usage& usage) override;
    int path(std::int32_t pid, std::span<char> buffer) override;
    int taskInfo(std::int32_t pid, TaskInfo& info) override;
    std::uint64_t absoluteTime() override;
    Timebase timebase() override;

  private:
    // What `answer` says of a process, or the failure if there is none or it refuses.
    template <typename Answer>
    int ask(std::int32_t pid, int failure, Answer answer);

    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace tavero
