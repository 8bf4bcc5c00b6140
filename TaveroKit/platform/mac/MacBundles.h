#pragma once

#include "platform/BundleSource.h"
#include "platform/mac/MacBundleInfo.h"

#include <memory>

namespace tavero {

// The names of a Mac's apps: CFBundleDisplayName and CFBundleName of a bundle's information.
class MacBundles final : public BundleSource {
  public:
    explicit MacBundles(std::shared_ptr<MacBundleInfo> info);

    std::optional<BundleNames> names(const std::string& bundlePath) override;

  private:
    std::shared_ptr<MacBundleInfo> info_;
};

} // namespace tavero
