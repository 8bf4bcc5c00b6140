#include "counters/MemoryReader.h"

namespace tavero::MemoryReader {

namespace {

MemoryPressure pressure(std::optional<std::int64_t> level) {
    if (level == 1) return MemoryPressure::normal;
    if (level == 2) return MemoryPressure::warning;
    if (level == 4) return MemoryPressure::critical;
    return MemoryPressure::unknown;
}

} // namespace

std::optional<MemorySnapshot> read(MemorySource& source) {
    const std::optional<MemoryCounts> counts = source.counts();
    if (!counts) return std::nullopt;
    const auto bytes = [&](std::uint64_t pages) {
        return saturatingProduct(pages, counts->pageSize);
    };
    const std::uint64_t internal = bytes(counts->internal);
    const std::uint64_t purgeable = bytes(counts->purgeable);
    return MemorySnapshot{
        .total = counts->total,
        .app = internal > purgeable ? internal - purgeable : 0,
        .wired = bytes(counts->wired),
        .compressed = bytes(counts->compressor),
        .cached = saturatingSum(bytes(counts->external), purgeable),
        .purgeable = purgeable,
        .swapUsed = counts->swapUsed,
        .pressure = pressure(counts->pressureLevel),
        .swapTotal = counts->swapTotal,
        .freeLevel = counts->freeLevel,
    };
}

} // namespace tavero::MemoryReader
