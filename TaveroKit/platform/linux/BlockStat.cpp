#include "platform/linux/BlockStat.h"

#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <cstdint>

namespace tavero {

std::optional<DiskCounters> parseBlockStat(std::string_view text) {
    constexpr std::uint64_t bytesPerSector = 512;
    TextCursor cursor(text);
    const auto nextButTwo = [&] {
        cursor.number();
        cursor.number();
        return cursor.number();
    };
    const auto read = nextButTwo();
    cursor.number(); // the time it took
    const auto written = nextButTwo();
    if (!read || !written) return std::nullopt;
    return DiskCounters{.bytesRead = saturatingProduct(*read, bytesPerSector),
                        .bytesWritten = saturatingProduct(*written, bytesPerSector)};
}

} // namespace tavero
