#pragma once

#include "platform/BundleSource.h"
#include "platform/linux/processes/DesktopFolders.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace tavero {

// What the apps of a Linux desktop are called: by the Name of their desktop entry. An AppImage that
// has none is called by its file.
class LinuxBundles final : public BundleSource {
  public:
    explicit LinuxBundles(std::shared_ptr<DesktopFolders> desktop) : desktop_(std::move(desktop)) {}

    std::optional<BundleNames> names(const std::string& bundlePath) override {
        const DesktopEntry* entry = desktop_->apps().withFile(bundlePath);
        if (!entry) return std::nullopt;
        return BundleNames{.displayName = std::nullopt, .name = entry->name};
    }

  private:
    std::shared_ptr<DesktopFolders> desktop_;
};

} // namespace tavero
