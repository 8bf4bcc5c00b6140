#include "platform/linux/LinuxSystem.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextCursor.h"

#include <chrono>

namespace tavero {

LinuxSystem::LinuxSystem(const std::filesystem::path& root) : stat_(root / "proc/stat") {}

std::optional<Date> LinuxSystem::bootTime() {
    const std::optional<std::string> text = readFile(stat_);
    return text ? parseBootTime(*text) : std::nullopt;
}

std::optional<Date> parseBootTime(std::string_view text) {
    constexpr std::uint64_t last = 7'258'118'400; // beyond the year 2200 it is no date
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine()) {
        if (!cursor.skip("btime ")) continue;
        const std::optional<std::uint64_t> seconds = cursor.number();
        if (!seconds || *seconds < 1 || *seconds > last) return std::nullopt;
        return Date(std::chrono::seconds(static_cast<std::int64_t>(*seconds)));
    }
    return std::nullopt;
}

} // namespace tavero
