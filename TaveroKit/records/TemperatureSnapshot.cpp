#include "records/TemperatureSnapshot.h"

#include <algorithm>
#include <string_view>

namespace tavero {

namespace {

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool containsIgnoringCase(std::string_view text, std::string_view lowerCasePart) {
    return std::search(text.begin(), text.end(), lowerCasePart.begin(), lowerCasePart.end(),
                       [](char a, char b) { return asciiLower(a) == b; }) != text.end();
}

template <typename Match>
std::optional<double> hottest(const std::vector<TemperatureReading>& readings, Match matches) {
    std::optional<double> result;
    for (const TemperatureReading& reading : readings)
        if (matches(reading.name) && (!result || reading.celsius > *result))
            result = reading.celsius;
    return result;
}

} // namespace

std::optional<double> TemperatureSnapshot::cpu() const {
    return hottest(all, [](std::string_view name) { return name.find("tdie") != name.npos; });
}

std::optional<double> TemperatureSnapshot::battery() const {
    return hottest(all,
                   [](std::string_view name) { return containsIgnoringCase(name, "battery"); });
}

std::optional<double> TemperatureSnapshot::ssd() const {
    return hottest(all, [](std::string_view name) { return name.find("NAND") != name.npos; });
}

} // namespace tavero
