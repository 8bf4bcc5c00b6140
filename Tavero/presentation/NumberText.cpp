#include "presentation/NumberText.h"

#include "records/Fixed.h"

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
    return value ? fixedDigits(*value, decimals) : placeholder;
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
