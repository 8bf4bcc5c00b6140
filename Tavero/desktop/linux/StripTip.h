#pragma once

#include <QPoint>
#include <QRasterWindow>
#include <QScreen>
#include <QString>

#include <memory>

namespace tavero {

// The tooltip of the strip: one line of text in a window of its own, which takes no clicks. There
// is none while it is hidden.
class StripTip {
  public:
    // Its middle below `at`, a point of the screen, as far as it fits. An empty text shows nothing.
    void show(const QString& text, QPoint at, const QScreen& screen, bool isDark);
    void hide() { window_.reset(); }
    bool isShown() const { return window_ != nullptr; }

  private:
    std::unique_ptr<QRasterWindow> window_;
};

} // namespace tavero
