#include "platform/mac/PropertyValue.h"

namespace tavero {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;

template <typename Kind>
const Kind* find(const PropertyMap& properties, std::string_view key) {
    const auto entry = properties.find(key);
    return entry == properties.end() ? nullptr : std::get_if<Kind>(&entry->second.value);
}

} // namespace

std::optional<std::int64_t> intValue(const PropertyMap& properties, std::string_view key) {
    if (const auto* whole = find<std::int64_t>(properties, key)) return *whole;
    const auto* number = find<double>(properties, key);
    if (number && *number >= -twoTo63 && *number < twoTo63)
        return static_cast<std::int64_t>(*number);
    return std::nullopt;
}

std::optional<std::uint64_t> uint64Value(const PropertyMap& properties, std::string_view key) {
    if (const std::optional<std::int64_t> whole = intValue(properties, key))
        return static_cast<std::uint64_t>(*whole);
    const auto* number = find<double>(properties, key);
    if (number && *number >= twoTo63 && *number < 2 * twoTo63)
        return static_cast<std::uint64_t>(*number);
    return std::nullopt;
}

std::optional<bool> boolValue(const PropertyMap& properties, std::string_view key) {
    const auto* boolean = find<bool>(properties, key);
    return boolean ? std::optional(*boolean) : std::nullopt;
}

const std::string* textValue(const PropertyMap& properties, std::string_view key) {
    return find<std::string>(properties, key);
}

const PropertyData* dataValue(const PropertyMap& properties, std::string_view key) {
    return find<PropertyData>(properties, key);
}

const PropertyList* listValue(const PropertyMap& properties, std::string_view key) {
    return find<PropertyList>(properties, key);
}

const PropertyMap* mapValue(const PropertyMap& properties, std::string_view key) {
    return find<PropertyMap>(properties, key);
}

} // namespace tavero
