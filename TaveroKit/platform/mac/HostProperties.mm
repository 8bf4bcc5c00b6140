#include "platform/mac/HostProperties.h"

#include <utility>

namespace tavero {

namespace {

// Nested deeper than any dictionary of the system is: a loop, or nonsense.
constexpr int deepest = 32;

PropertyMap map(NSDictionary* dictionary, int depth);
PropertyList list(NSArray* array, int depth);

PropertyValue number(NSNumber* number) {
    // A Boolean is a number to the system too, but of a type of its own.
    if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID())
        return {static_cast<bool>(number.boolValue)};
    if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return {number.doubleValue};
    return {static_cast<std::int64_t>(number.longLongValue)};
}

PropertyData data(NSData* data) {
    const auto* bytes = static_cast<const std::byte*>(data.bytes);
    return {bytes, bytes + data.length};
}

std::optional<PropertyValue> property(id value, int depth) {
    if (depth > deepest) return std::nullopt;
    if (std::optional<std::string> text = propertyText(value))
        return PropertyValue{std::move(*text)};
    if ([value isKindOfClass:NSNumber.class]) return number(value);
    if ([value isKindOfClass:NSData.class]) return PropertyValue{data(value)};
    if ([value isKindOfClass:NSArray.class]) return PropertyValue{list(value, depth)};
    if ([value isKindOfClass:NSDictionary.class]) return PropertyValue{map(value, depth)};
    return std::nullopt;
}

PropertyList list(NSArray* array, int depth) {
    PropertyList list;
    for (id value in array)
        if (std::optional<PropertyValue> entry = property(value, depth + 1))
            list.push_back(std::move(*entry));
    return list;
}

PropertyMap map(NSDictionary* dictionary, int depth) {
    PropertyMap map;
    for (id key in dictionary) {
        std::optional<std::string> name = propertyText(key);
        if (!name) continue;
        if (std::optional<PropertyValue> entry = property(dictionary[key], depth + 1))
            map.insert_or_assign(std::move(*name), std::move(*entry));
    }
    return map;
}

} // namespace

std::optional<std::string> propertyText(id value) {
    if (![value isKindOfClass:NSString.class]) return std::nullopt;
    const char* text = static_cast<NSString*>(value).UTF8String;
    return text ? std::optional<std::string>(text) : std::nullopt;
}

PropertyMap propertyMap(NSDictionary* dictionary) {
    @autoreleasepool {
        return map(dictionary, 0);
    }
}

} // namespace tavero
