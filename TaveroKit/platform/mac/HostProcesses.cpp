#include "platform/mac/Host.h"

#include <libproc.h>
#include <mach/mach_time.h>
#include <sys/resource.h>

namespace tavero {

namespace {

class HostProcesses : public MacProcessTable {
  public:
    int listAllPids(std::span<std::int32_t> pids) override {
        return proc_listallpids(pids.data(), static_cast<int>(pids.size_bytes()));
    }

    int usage(std::int32_t pid, Usage& usage) override {
        rusage_info_v4 info{};
        const int result =
            proc_pid_rusage(pid, RUSAGE_INFO_V4, reinterpret_cast<rusage_info_t*>(&info));
        usage = {
            .userTime = info.ri_user_time,
            .systemTime = info.ri_system_time,
            .footprint = info.ri_phys_footprint,
            .start = info.ri_proc_start_abstime,
            .diskRead = info.ri_diskio_bytesread,
            .diskWritten = info.ri_diskio_byteswritten,
        };
        return result;
    }

    int path(std::int32_t pid, std::span<char> buffer) override {
        return proc_pidpath(pid, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    }

    int taskInfo(std::int32_t pid, TaskInfo& info) override {
        proc_taskinfo task{};
        const int result = proc_pidinfo(pid, PROC_PIDTASKINFO, 0, &task, sizeof task);
        info = {.threads = task.pti_threadnum};
        return result;
    }

    std::uint64_t absoluteTime() override { return mach_absolute_time(); }

    Timebase timebase() override {
        mach_timebase_info_data_t info{};
        mach_timebase_info(&info);
        return {.numer = info.numer, .denom = info.denom};
    }
};

} // namespace

std::shared_ptr<MacProcessTable> hostProcesses() { return std::make_shared<HostProcesses>(); }

} // namespace tavero
