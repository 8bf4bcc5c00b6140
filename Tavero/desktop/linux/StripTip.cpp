#include "desktop/linux/StripTip.h"

#include "desktop/linux/StripColors.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr int height = 24;
constexpr int padding = 10;
constexpr int distance = 6; // from the strip
constexpr int margin = 4;   // from the edge of the screen

QFont font() {
    QFont font = QGuiApplication::font();
    font.setPixelSize(12);
    return font;
}

class TipWindow final : public QRasterWindow {
  public:
    TipWindow(QString text, bool isDark) : text_(std::move(text)), isDark_(isDark) {
        setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                 Qt::WindowDoesNotAcceptFocus);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        const StripColors colors = StripColors::of(isDark_);
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), colors.tip);
        painter.setPen(colors.tipText);
        painter.setFont(font());
        painter.drawText(QRect(QPoint(), size()), Qt::AlignCenter, text_);
    }

  private:
    QString text_;
    bool isDark_;
};

} // namespace

void StripTip::show(const QString& text, QPoint at, const QScreen& screen, bool isDark) {
    window_.reset();
    if (text.isEmpty()) return;
    const QRect area = screen.geometry();
    const int width = QFontMetrics(font()).horizontalAdvance(text) + 2 * padding;
    const int left = std::max(std::min(at.x() - width / 2, area.right() + 1 - width - margin),
                              area.left() + margin);
    window_ = std::make_unique<TipWindow>(text, isDark);
    window_->setGeometry(left, at.y() + distance, width, height);
    window_->show();
}

} // namespace tavero
