#include "window/MemoryBreakdown.h"

#include "components/Palette.h"
#include "presentation/Color.h"
#include "presentation/Metric.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <cstdint>

namespace tavero {

namespace {

// Beside the metric's own colour: what is taken reads warm, what can be given back cool.
constexpr AdaptiveColor wiredColor{{0xA8431F}, {0xD8613F}};
constexpr AdaptiveColor compressedColor{{0xF0B429}, {0xFFD27A}};
constexpr AdaptiveColor cachedColor{{0x8AA4B8}, {0x6E8798}};
constexpr AdaptiveColor freeColor{{0xD3D8DF}, {0x4B4B50}};

} // namespace

std::vector<SegmentRow> memoryBreakdown(const MemorySnapshot& memory, const Format& format,
                                        bool isDark) {
    const std::uint64_t whole =
        std::max<std::uint64_t>({memory.total, saturatingSum(memory.used(), memory.cached), 1});
    const auto segment = [&](const char* name, std::uint64_t bytes, const AdaptiveColor& color) {
        return SegmentRow{.name = QString::fromLatin1(name),
                          .value = QString::fromStdString(format.bytes(bytes)),
                          .fraction = static_cast<double>(bytes) / static_cast<double>(whole),
                          .color = pick(color, isDark)};
    };
    return {segment("Apps", memory.app, color(Metric::memory)),
            segment("Wired", memory.wired, wiredColor),
            segment("Compressed", memory.compressed, compressedColor),
            segment("Cached", memory.cached, cachedColor),
            segment("Free", memory.free(), freeColor)};
}

} // namespace tavero
