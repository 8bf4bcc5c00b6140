#pragma once

#include "platform/linux/sound/SoundGraph.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct spa_dict;

// What PipeWire writes as text.
namespace tavero::PipeWireValues {

// Absent unless all of the text is one number that fits.
template <class Number>
std::optional<Number> number(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

// Empty if there is no such key.
std::string_view text(const spa_dict* properties, const char* key);

template <class Number>
std::optional<Number> number(const spa_dict* properties, const char* key) {
    return number<Number>(text(properties, key));
}

// The member "name" of a JSON object. Empty if there is none.
std::string nameIn(std::string_view json);
// A JSON object with that member only.
std::string withName(std::string_view name);

SoundNode::Kind kindOf(std::string_view mediaClass);

// Takes over what the properties say; what they leave out stays.
void describe(SoundNode& node, const spa_dict* properties);

} // namespace tavero::PipeWireValues
