#pragma once

#include "platform/linux/TextCursor.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavero {

// A whole number as a driver writes it, alone on its line. Absent if the text is anything else, or
// larger than any voltage, charge, speed or temperature in the millionths that sysfs counts in.
inline std::optional<std::int64_t> sysfsNumber(std::string_view text) {
    constexpr std::uint64_t most = 1'000'000'000'000;
    TextCursor cursor(text);
    const bool isNegative = cursor.skip("-");
    const std::optional<std::uint64_t> size = cursor.number();
    if (!size || *size > most) return std::nullopt;
    if (!cursor.atEnd() && cursor.rest() != "\n") return std::nullopt;
    const auto value = static_cast<std::int64_t>(*size);
    return isNegative ? -value : value;
}

} // namespace tavero
