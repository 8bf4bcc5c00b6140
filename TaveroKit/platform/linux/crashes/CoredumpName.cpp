#include "platform/linux/crashes/CoredumpName.h"

#include "platform/linux/processes/UnitNames.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>

namespace tavero {

namespace {

constexpr std::size_t bootIdLength = 32; // hexadecimal digits

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f'); }

// Takes the last part off. Without a dot there is none, and the result is empty.
std::string_view takeLast(std::string_view& name) {
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos) return {};
    const std::string_view last = name.substr(dot + 1);
    name = name.substr(0, dot);
    return last;
}

template <typename Number>
std::optional<Number> number(std::string_view digits) {
    Number value{};
    if (digits.empty() || !isDigit(digits.front())) return std::nullopt;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), value);
    if (error != std::errc() || end != digits.end()) return std::nullopt;
    return value;
}

bool isBootId(std::string_view text) {
    return text.size() == bootIdLength && std::all_of(text.begin(), text.end(), isHexDigit);
}

std::optional<Date> date(std::int64_t microseconds) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 1000;
    if (microseconds > most) return std::nullopt;
    return Date(std::chrono::microseconds(microseconds));
}

} // namespace

// From the right, where the parts are numbers: the name in front may hold anything.
std::optional<CoredumpName> coredumpName(std::string_view name) {
    constexpr std::string_view prefix = "core.";
    if (!name.starts_with(prefix)) return std::nullopt;
    name.remove_prefix(prefix.size());

    for (const std::string_view ending : {".zst", ".lz4", ".xz"})
        if (name.ends_with(ending)) {
            name.remove_suffix(ending.size());
            break;
        }
    const auto microseconds = number<std::int64_t>(takeLast(name));
    const auto pid = number<std::int32_t>(takeLast(name));
    const std::string_view boot = takeLast(name);
    const auto uid = number<std::uint32_t>(takeLast(name));
    const auto time = microseconds ? date(*microseconds) : std::nullopt;
    if (!time || !pid || !isBootId(boot) || !uid || name.empty()) return std::nullopt;
    return CoredumpName{unescapeUnitName(name), *uid, *pid, *time};
}

} // namespace tavero
