#include "desktop/linux/StatusStrip.h"

#include "desktop/linux/DockWindow.h"
#include "desktop/linux/StatusInk.h"
#include "desktop/linux/StripAccessible.h"
#include "desktop/linux/StripColors.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QMetaObject>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <chrono>
#include <cmath>
#include <utility>

namespace tavero {

namespace {

constexpr int margin = 4;  // at the ends
constexpr int padding = 7; // beside a picture
constexpr auto tipDelay = std::chrono::milliseconds(600);

QSizeF pointsOf(const QImage& image) { return QSizeF(image.size()) / image.devicePixelRatio(); }

} // namespace

StatusStrip::StatusStrip(Clock& clock) : clock_(clock) {
    makeStripsAccessible();
    setTitle(QStringLiteral("Tavero"));
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
             Qt::WindowDoesNotAcceptFocus);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &StatusStrip::watch);
    watch(QGuiApplication::primaryScreen());
}

StatusStrip::~StatusStrip() = default;

void StatusStrip::watch(QScreen* screen) {
    if (!screen) return;
    setScreen(screen);
    connect(screen, &QScreen::availableGeometryChanged, this, &StatusStrip::place,
            Qt::UniqueConnection);
    connect(screen, &QScreen::geometryChanged, this, &StatusStrip::place, Qt::UniqueConnection);
    place();
}

void StatusStrip::setCells(std::vector<Cell> cells) {
    if (cells.size() != cells_.size()) {
        pressed_.reset();
        hover(std::nullopt);
    }
    cells_ = std::move(cells);
    place();
    update();
}

void StatusStrip::setDark(bool isDark) {
    if (std::exchange(isDark_, isDark) == isDark) return;
    tip_.hide();
    update();
}

void StatusStrip::place() {
    const QRect area = screen()->availableGeometry();
    const QSize size(wantedWidth(), thickness);
    // The space that the strip keeps free for itself doesn't push it down.
    const bool isBelowItself = isVisible() && area.top() == geometry().bottom() + 1;
    const QPoint corner(area.right() + 1 - size.width(), isBelowItself ? y() : area.top());
    const QRect place(corner, size);
    if (place == geometry() && handle()) return;
    setGeometry(place);
    makeDock(*this);
}

int StatusStrip::widthOf(const Cell& cell) const {
    const double content = cell.picture.wide.isNull()
                               ? QFontMetrics(QGuiApplication::font()).horizontalAdvance(cell.title)
                               : pointsOf(cell.picture.wide).width();
    return static_cast<int>(std::ceil(content)) + 2 * padding;
}

int StatusStrip::wantedWidth() const {
    int width = 2 * margin;
    for (const Cell& cell : cells_) width += widthOf(cell);
    return width;
}

// From the right, for a window manager may stretch a bar over the whole edge.
QRect StatusStrip::cellRect(std::size_t index) const {
    if (index >= cells_.size()) return {};
    int right = width() - margin;
    for (std::size_t at = 0; at < index; ++at) right -= widthOf(cells_[at]);
    const int cellWidth = widthOf(cells_[index]);
    return {right - cellWidth, 0, cellWidth, thickness};
}

std::optional<std::size_t> StatusStrip::cellAt(QPoint point) const {
    for (std::size_t index = 0; index < cells_.size(); ++index)
        if (cellRect(index).contains(point)) return index;
    return std::nullopt;
}

void StatusStrip::paintEvent(QPaintEvent*) {
    const StripColors colors = StripColors::of(isDark_);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.fillRect(QRect(QPoint(), size()), colors.background);
    painter.fillRect(0, height() - 1, width(), 1, colors.line);
    painter.fillRect(0, 0, 1, height(), colors.line);
    for (std::size_t index = 0; index < cells_.size(); ++index) drawCell(painter, index);
}

void StatusStrip::drawCell(QPainter& painter, std::size_t index) const {
    const StripColors colors = StripColors::of(isDark_);
    const Cell& cell = cells_[index];
    const QRect rect = cellRect(index);
    if (hovered_ == index) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(pressed_ == index ? colors.pressed : colors.hovered);
        painter.drawRoundedRect(QRectF(rect).adjusted(1, 2, -1, -3), 5, 5);
    }
    if (cell.picture.wide.isNull()) {
        painter.setPen(statusInk(isDark_));
        painter.setFont(QGuiApplication::font());
        painter.drawText(rect, Qt::AlignCenter, cell.title);
        return;
    }
    const QSizeF size = pointsOf(cell.picture.wide);
    // On whole points, or every line would blur.
    const QPointF corner(rect.left() + padding,
                         std::floor(rect.top() + (thickness - 1 - size.height()) / 2));
    painter.drawImage(corner,
                      inked(cell.picture.wide, cell.picture.isTemplate, statusInk(isDark_)));
}

void StatusStrip::press(std::size_t index) {
    if (index >= cells_.size() || !cells_[index].open) return;
    tip_.hide();
    tipTimer_.reset();
    // Not from within the event: the owner may take the whole strip away.
    QMetaObject::invokeMethod(
        this, [open = cells_[index].open, at = mapToGlobal(cellRect(index).center())] { open(at); },
        Qt::QueuedConnection);
}

void StatusStrip::hover(std::optional<std::size_t> index) {
    if (hovered_ == index) return;
    hovered_ = index;
    tip_.hide();
    tipTimer_.reset();
    if (hovered_) tipTimer_ = clock_.after(tipDelay, [this] { showTip(); });
    update();
}

void StatusStrip::showTip() {
    if (!hovered_ || *hovered_ >= cells_.size()) return;
    const QRect rect = cellRect(*hovered_);
    tip_.show(QString::fromStdString(cells_[*hovered_].picture.text),
              mapToGlobal(QPoint(rect.center().x(), rect.bottom())), *screen(), isDark_);
}

void StatusStrip::mouseMoveEvent(QMouseEvent* event) { hover(cellAt(event->position().toPoint())); }

void StatusStrip::mousePressEvent(QMouseEvent* event) {
    hover(cellAt(event->position().toPoint()));
    pressed_ = hovered_;
    update();
}

void StatusStrip::mouseReleaseEvent(QMouseEvent* event) {
    const auto released = cellAt(event->position().toPoint());
    const auto pressed = std::exchange(pressed_, std::nullopt);
    update();
    if (released && released == pressed) press(*released);
}

bool StatusStrip::event(QEvent* event) {
    if (event->type() == QEvent::Leave) hover(std::nullopt);
    if (event->type() == QEvent::Close) { // it goes when there is another door
        event->ignore();
        return true;
    }
    return QRasterWindow::event(event);
}

} // namespace tavero
