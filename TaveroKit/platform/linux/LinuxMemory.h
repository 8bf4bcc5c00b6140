#pragma once

#include "platform/MemorySource.h"
#include "platform/linux/KeptFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tavero {

struct Meminfo;

// Memory counters from /proc/meminfo, /proc/pressure/memory and the zram devices. A page is one
// KiB here, since that is what meminfo counts. The parts add up to MemTotal:
//   external    Buffers + Cached + SReclaimable - Shmem: what is given back on demand
//   internal    AnonPages + Shmem
//   compressor  Zswap and the memory of the zram devices
//   wired       the rest of what isn't MemFree: the kernel, its drivers, huge pages
//   purgeable   0, it has no counterpart
// The pressure level goes by stalls over ten seconds: 4 if all tasks waited for memory during a
// tenth of them, 2 if some task did. Absent from a kernel that doesn't count stalls.
// The free level is MemAvailable in percent of MemTotal.
class LinuxMemory : public MemorySource {
  public:
    explicit LinuxMemory(const std::filesystem::path& root);

    std::optional<MemoryCounts> counts() override;

  private:
    std::uint64_t zramMemory(const Meminfo& memory);
    void findZram();
    std::optional<std::int64_t> pressureLevel();

    KeptFile meminfo_;
    KeptFile pressure_;
    std::filesystem::path blockDevices_;
    std::vector<KeptFile> zram_;
    std::optional<std::uint64_t> swapTotal_; // when the zram devices were listed
    std::vector<char> buffer_;
};

} // namespace tavero
