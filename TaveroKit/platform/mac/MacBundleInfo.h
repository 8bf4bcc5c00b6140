#pragma once

#include "platform/mac/PropertyValue.h"

#include <optional>
#include <span>
#include <string>

namespace tavero {

// What the Mac's bundles say of themselves.
class MacBundleInfo {
  public:
    virtual ~MacBundleInfo() = default;

    // -[NSBundle objectForInfoDictionaryKey:] for each of these keys, in the user's language; a key
    // that a bundle lacks is left out. Absent if there is no bundle at this path.
    virtual std::optional<PropertyMap> info(const std::string& bundlePath,
                                            std::span<const char* const> keys) = 0;
};

} // namespace tavero
