#include "presentation/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tavero {

namespace {

constexpr double gibibyte = 1024.0 * 1024 * 1024;

} // namespace

std::optional<double> known(std::optional<double> value) {
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::string fixed(std::optional<double> value, int decimals) {
    value = known(value);
    if (!value) return placeholder;
    // Not snprintf, whose decimal separator follows the locale. The largest double has 309 digits.
    std::array<char, 400> buffer;
    char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), *value,
                                    std::chars_format::fixed, decimals)
                          .ptr;
    std::string text(buffer.data(), end);
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    if (isZero && text.front() == '-') text.erase(0, 1);
    return text;
}

std::string percent(std::optional<double> fraction) {
    return fixed(fraction ? std::optional(*fraction * 100) : std::nullopt, 0);
}

std::string gibibytes(std::uint64_t bytes) {
    return fixed(static_cast<double>(bytes) / gibibyte, 1);
}

std::string wholeGibibytes(std::uint64_t bytes) {
    return fixed(std::round(static_cast<double>(bytes) / gibibyte), 0);
}

std::string grouped(std::string digits, std::string_view separator) {
    const std::size_t first = digits.find_first_of("0123456789");
    if (first == std::string::npos) return digits;
    for (std::size_t at = digits.size(); at > first + 3;) {
        at -= 3;
        digits.insert(at, separator);
    }
    return digits;
}

} // namespace tavero
