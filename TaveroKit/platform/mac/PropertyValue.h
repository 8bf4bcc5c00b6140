#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tavero {

struct PropertyValue;

using PropertyData = std::vector<std::byte>;
using PropertyList = std::vector<PropertyValue>;
using PropertyMap = std::map<std::string, PropertyValue, std::less<>>;

// One value of a dictionary that the system hands out, without the system's types: text, a whole
// number or one with a fraction, a Boolean, data, a list or a map.
struct PropertyValue {
    std::variant<std::string, std::int64_t, double, bool, PropertyData, PropertyList, PropertyMap>
        value;

    bool operator==(const PropertyValue&) const = default;
};

// What a dictionary has under a key. Absent, or null, if the key is missing or the value is of
// another kind; a Boolean is no number.

// A number without its fraction. Absent also if it does not fit.
std::optional<std::int64_t> intValue(const PropertyMap& properties, std::string_view key);
// The same as unsigned: the system hands out large unsigned numbers as negative ones.
std::optional<std::uint64_t> uint64Value(const PropertyMap& properties, std::string_view key);
std::optional<bool> boolValue(const PropertyMap& properties, std::string_view key);
const std::string* textValue(const PropertyMap& properties, std::string_view key);
const PropertyData* dataValue(const PropertyMap& properties, std::string_view key);
const PropertyList* listValue(const PropertyMap& properties, std::string_view key);
const PropertyMap* mapValue(const PropertyMap& properties, std::string_view key);

} // namespace tavero
