#pragma once

#include "platform/ProcessSource.h"

#include <cstdint>
#include <span>

namespace tavero {

// The Mac's calls about processes, each with its answer as the call leaves it.
class MacProcessTable {
  public:
    virtual ~MacProcessTable() = default;

    // What is read of a rusage_info_v4. Times in ticks of the timebase.
    struct Usage {
        std::uint64_t userTime = 0;
        std::uint64_t systemTime = 0;
        std::uint64_t footprint = 0; // bytes
        std::uint64_t start = 0;     // by absoluteTime()
        std::uint64_t diskRead = 0;  // bytes
        std::uint64_t diskWritten = 0;
    };
    // What is read of a proc_taskinfo.
    struct TaskInfo {
        std::int32_t threads = 0;
    };

    // proc_listallpids: how many there are, below 0 if it fails. Without room it tells how much is
    // needed, and some more.
    virtual int listAllPids(std::span<std::int32_t> pids) = 0;

    // proc_pid_rusage for RUSAGE_INFO_V4: 0 on success. Refused for another user's process.
    virtual int usage(std::int32_t pid, Usage& usage) = 0;

    // proc_pidpath: the bytes written, below 1 if it fails.
    virtual int path(std::int32_t pid, std::span<char> buffer) = 0;

    // proc_pidinfo for PROC_PIDTASKINFO: the bytes written, below 1 if it fails.
    virtual int taskInfo(std::int32_t pid, TaskInfo& info) = 0;

    // mach_absolute_time.
    virtual std::uint64_t absoluteTime() = 0;

    // mach_timebase_info into a zeroed one.
    virtual Timebase timebase() = 0;
};

} // namespace tavero
