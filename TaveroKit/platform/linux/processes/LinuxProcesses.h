#pragma once

#include "platform/ProcessSource.h"
#include "platform/linux/KeptFile.h"
#include "platform/linux/processes/DesktopFolders.h"
#include "platform/linux/processes/ProcFiles.h"
#include "platform/linux/processes/ProcFolder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavero {

// The two clocks that the processes of a machine are measured by; a recorded machine has its own.
struct ProcessClocks {
    // Nanoseconds of CPU time that a process used. Absent if there is no such process or no such
    // clock.
    std::function<std::optional<std::uint64_t>(std::int32_t pid)> cpu;
    // Nanoseconds that only go forward.
    std::function<std::uint64_t()> now;

    static ProcessClocks host();
    // For a machine that was recorded: its processes have no clocks here, so the ticks in their
    // files count.
    static ProcessClocks recorded();
};

// The processes of a Linux machine.
//
// A process whose CPU clock stands still did nothing: its threads and bytes can't have changed, and
// its memory only by being trimmed. So each pass asks every clock and opens files only for those
// whose clock moved; the memory is read when the count of resident pages changed, and of all
// processes in turn every few seconds; and /proc is listed only after something forked.
//   cpuTime      the process's CPU clock; where that is refused, user and system ticks of stat
//   memory       resident pages less those of files and shared memory, from statm
//   disk bytes   read_bytes and write_bytes of io; 0 for another user's processes, whose io is
//   refused threads      num_threads of stat
// The rest of another user's process is open to everybody, so as a rule hasUsage is true for all.
class LinuxProcesses final : public ProcessSource {
  public:
    // `root` holds proc/. The desktop entries are shared with whoever names and draws the apps.
    LinuxProcesses(const std::filesystem::path& root, std::shared_ptr<DesktopFolders> desktop,
                   ProcessClocks clocks = ProcessClocks::host());

    std::span<const ProcessCounters> processes(bool threads) override;
    std::optional<std::string> path(std::int32_t pid) override;
    std::optional<AppIdentity> owner(std::int32_t pid, const std::string& path) override;
    std::uint64_t clock() override { return clocks_.now(); }
    SystemVocabulary vocabulary() override;

  private:
    // What is kept of a process beside its counters.
    struct Kept {
        std::uint64_t firstSeen = 0; // these two by now()
        std::uint64_t memoryRead = 0;
        std::uint64_t clock = 0;
        std::uint64_t resident = 0; // pages, as stat counted them last
        std::int64_t threads = 0;
        std::int32_t parent = 0;
        std::array<char, 16> comm = {};
        bool isKernelThread = false;
        bool isMemoryDue = true;
        bool isSettled = false; // the service manager has put it where it belongs
        bool isIORefused = false;
        std::size_t cgroupHash = 0; // when the owner was found out
        std::optional<AppIdentity> owner;
    };
    // The processes by pid, the two lists side by side.
    struct Table {
        std::vector<ProcessCounters> counters;
        std::vector<Kept> kept;

        void clear();
        void add(const ProcessCounters& process, Kept&& kept);
    };

    bool mayHaveForked(std::uint64_t now);
    void list(std::uint64_t now);
    bool update(ProcessCounters& counters, Kept& kept, std::uint64_t now);
    void settle(ProcessCounters& counters, Kept& kept);
    bool readFiles(ProcessCounters& counters, Kept& kept, std::optional<std::uint64_t> clock,
                   std::uint64_t now);
    void takeStat(const StatLine& stat, ProcessCounters& counters, Kept& kept, std::uint64_t now);
    void readMemory(ProcessCounters& counters, Kept& kept, std::uint64_t now);
    void readDisk(ProcessCounters& counters, Kept& kept);
    Kept* find(std::int32_t pid);
    AppIdentity ownerOf(std::int32_t pid, Kept& kept, const std::string& path, int generation);
    std::optional<AppIdentity> parentOf(const Kept& kept, int generation);

    ProcFolder proc_;
    KeptFile stat_;
    std::shared_ptr<DesktopFolders> desktop_;
    ProcessClocks clocks_;
    std::string ownCgroup_;

    Table table_;
    Table previous_; // kept for its room
    std::vector<std::int32_t> pids_;
    std::vector<char> statText_;
    std::array<char, 4096> buffer_;
    std::optional<std::uint64_t> forks_;
    std::uint64_t listed_ = 0;
    bool isDesktopFresh_ = false; // in this pass
};

} // namespace tavero
