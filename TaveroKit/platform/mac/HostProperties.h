#pragma once

#include "platform/mac/PropertyValue.h"

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace tavero {

// A value of the system as text. Absent if it is of another kind, or nil.
std::optional<std::string> propertyText(id value);

// A dictionary of the system as values of ours. Keys that are no text, and values of a kind that
// PropertyValue does not know, are left out.
PropertyMap propertyMap(NSDictionary* dictionary);

} // namespace tavero
