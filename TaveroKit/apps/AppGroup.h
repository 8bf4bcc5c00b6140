#pragma once

#include "records/AppIdentity.h"
#include "records/ProcessSample.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// The processes of one app, one tool or the operating system, in one pass.
class AppGroup {
  public:
    // The processes are borrowed from the pass that sampled them.
    AppGroup(AppIdentity identity, std::string name, std::vector<const ProcessSample*> processes);

    void append(const std::vector<const ProcessSample*>& more);

    const AppIdentity& identity() const { return identity_; }
    const std::string& name() const { return name_; }
    const std::vector<const ProcessSample*>& processes() const { return processes_; }

    double cpu() const { return cpu_; }              // cores, sum over the processes
    std::uint64_t memory() const { return memory_; } // bytes, likewise
    std::uint64_t diskRead() const;                  // bytes, cumulative
    std::uint64_t diskWritten() const;
    // Processes that can be seen but not measured.
    std::int64_t hiddenCount() const;

  private:
    void total();

    AppIdentity identity_;
    std::string name_;
    std::vector<const ProcessSample*> processes_;
    double cpu_ = 0;
    std::uint64_t memory_ = 0;
};

} // namespace tavero
