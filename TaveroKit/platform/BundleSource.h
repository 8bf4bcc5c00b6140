#pragma once

#include <optional>
#include <string>

namespace tavero {

// What an app calls itself.
struct BundleNames {
    std::optional<std::string> displayName; // absent if it has none that is text
    std::optional<std::string> name;        // likewise

    bool operator==(const BundleNames&) const = default;
};

// Where the names of apps come from: the information that is installed with each.
class BundleSource {
  public:
    virtual ~BundleSource() = default;

    // By the id of an app, a path. Absent if nothing can be read there. Reads files, so the answer
    // is worth keeping.
    virtual std::optional<BundleNames> names(const std::string& bundlePath) = 0;
};

} // namespace tavero
