#pragma once

#include "desktop/AppIcons.h"

#include <map>
#include <string>
#include <utility>

namespace tavero {

// The icon that a .desktop file names, from its own path or from the desktop's icon theme, where
// Qt falls back to "hicolor". Other files, an AppImage for one, have no icon that could be read
// without running them.
class LinuxAppIcons final : public AppIcons {
  public:
    QImage icon(const std::string& bundlePath, int pixels) override;

  private:
    std::map<std::pair<std::string, int>, QImage> known_; // the null ones too
};

} // namespace tavero
