#pragma once

#include "platform/mac/PropertyValue.h"

#include <string>
#include <vector>

namespace tavero {

// The Mac's registry of devices and drivers.
class MacRegistry {
  public:
    virtual ~MacRegistry() = default;

    // The properties of every service of a class, in the registry's order; one whose properties
    // can't be read is left out. IOServiceGetMatchingServices, IORegistryEntryCreateCFProperties.
    virtual std::vector<PropertyMap> services(const std::string& className) = 0;

    // The same of the children that all these services have in the plane "IOService": the
    // connections of programs to a driver are found only there. IORegistryEntryGetChildIterator.
    virtual std::vector<PropertyMap> children(const std::string& className) = 0;
};

} // namespace tavero
