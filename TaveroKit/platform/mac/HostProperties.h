#pragma once

#include "platform/mac/PropertyValue.h"

#import <Foundation/Foundation.h>

namespace tavero {

// A dictionary of the system as values of ours. Keys that are no text, and values of a kind that
// PropertyValue does not know, are left out.
PropertyMap propertyMap(NSDictionary* dictionary);

} // namespace tavero
