#pragma once

#include <QImage>

#include <memory>
#include <string>

namespace tavero {

// The icons that apps have on this desktop. Main thread only; needs a QGuiApplication.
class AppIcons {
  public:
    virtual ~AppIcons() = default;

    // The icon of the app with this id, AppUsage::bundlePath, so many pixels wide and high. Null if
    // it has none or none that can be read. Reads files on the first call for an app and size and
    // keeps the answer, so that it may be asked on every update.
    virtual QImage icon(const std::string& bundlePath, int pixels) = 0;
};

// The icons of this desktop. Defined by the one platform that is linked in.
std::unique_ptr<AppIcons> hostAppIcons();

} // namespace tavero
