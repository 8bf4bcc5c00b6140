#include "platform/linux/LinuxMemory.h"

#include "platform/linux/Meminfo.h"
#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>

namespace tavero {

namespace {

constexpr std::uint64_t bytesPerPage = 1024;
constexpr double notableStall = 10; // percent
constexpr std::int64_t normal = 1;
constexpr std::int64_t warning = 2;
constexpr std::int64_t critical = 4;

std::uint64_t difference(std::uint64_t a, std::uint64_t b) { return a > b ? a - b : 0; }

std::int64_t percent(std::uint64_t part, std::uint64_t whole) {
    return part >= whole ? 100 : static_cast<std::int64_t>(saturatingProduct(part, 100) / whole);
}

} // namespace

LinuxMemory::LinuxMemory(const std::filesystem::path& root)
    : meminfo_(root / "proc/meminfo"), pressure_(root / "proc/pressure/memory"),
      blockDevices_(root / "sys/block") {}

std::optional<MemoryCounts> LinuxMemory::counts() {
    const std::optional<std::string_view> text = meminfo_.read(buffer_);
    const std::optional<Meminfo> memory = text ? parseMeminfo(*text) : std::nullopt;
    if (!memory) return std::nullopt;

    MemoryCounts counts{.pageSize = bytesPerPage};
    counts.internal = saturatingSum(memory->anonymous, memory->shared);
    const std::uint64_t cached = saturatingSum(memory->buffers, memory->cached);
    counts.external = difference(saturatingSum(cached, memory->reclaimableSlab), memory->shared);
    counts.compressor = saturatingSum(memory->compressedSwap, zramMemory(*memory));
    const std::uint64_t apps = saturatingSum(counts.internal, counts.external);
    counts.wired =
        difference(difference(memory->total, memory->free), saturatingSum(apps, counts.compressor));
    counts.total = saturatingProduct(memory->total, bytesPerPage);
    counts.swapTotal = saturatingProduct(memory->swapTotal, bytesPerPage);
    counts.swapUsed =
        saturatingProduct(difference(memory->swapTotal, memory->swapFree), bytesPerPage);
    counts.pressureLevel = pressureLevel();
    if (memory->available) counts.freeLevel = percent(*memory->available, memory->total);
    return counts;
}

// In pages. A device that comes to hold swap changes the swap space, so they are listed only then.
std::uint64_t LinuxMemory::zramMemory(const Meminfo& memory) {
    if (swapTotal_ != memory.swapTotal) {
        swapTotal_ = memory.swapTotal;
        findZram();
    }
    std::uint64_t bytes = 0;
    for (KeptFile& device : zram_)
        if (const auto text = device.read(buffer_))
            bytes = saturatingSum(bytes, parseZramMemory(*text).value_or(0));
    return bytes / bytesPerPage;
}

void LinuxMemory::findZram() {
    zram_.clear();
    std::error_code error;
    for (std::filesystem::directory_iterator entry(blockDevices_, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::filesystem::path& device = entry->path();
        if (!device.filename().string().starts_with("zram")) continue;
        // One that is not set up has no size and takes no memory.
        const std::string size = readAttribute(device / "disksize");
        if (TextCursor(size).number().value_or(0) > 0) zram_.emplace_back(device / "mm_stat");
    }
}

std::optional<std::int64_t> LinuxMemory::pressureLevel() {
    const std::optional<std::string_view> text = pressure_.read(buffer_);
    const std::optional<MemoryStall> stall = text ? parseMemoryStall(*text) : std::nullopt;
    if (!stall) return std::nullopt;
    if (stall->full >= notableStall) return critical;
    return stall->some >= notableStall ? warning : normal;
}

} // namespace tavero
