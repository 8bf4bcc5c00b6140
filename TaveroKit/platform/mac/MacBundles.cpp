#include "platform/mac/MacBundles.h"

#include <array>
#include <utility>

namespace tavero {

namespace {

constexpr const char* displayNameKey = "CFBundleDisplayName";
constexpr const char* nameKey = "CFBundleName";

std::optional<std::string> text(const PropertyMap& info, const char* key) {
    const std::string* text = textValue(info, key);
    return text ? std::optional(*text) : std::nullopt;
}

} // namespace

MacBundles::MacBundles(std::shared_ptr<MacBundleInfo> info) : info_(std::move(info)) {}

std::optional<BundleNames> MacBundles::names(const std::string& bundlePath) {
    constexpr std::array keys{displayNameKey, nameKey};
    const std::optional<PropertyMap> info = info_->info(bundlePath, keys);
    if (!info) return std::nullopt;
    return BundleNames{.displayName = text(*info, displayNameKey), .name = text(*info, nameKey)};
}

} // namespace tavero
