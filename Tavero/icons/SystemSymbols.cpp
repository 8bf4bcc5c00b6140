#include "icons/Symbols.h"

#include "desktop/mac/HostSymbols.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstddef>

namespace tavero {

namespace {

constexpr double anyPointSize = 12;

// The mask in one colour.
QImage colored(const SymbolMask& mask, const QColor& color) {
    QImage image(mask.width, mask.height, QImage::Format_ARGB32);
    for (int y = 0; y < mask.height; ++y)
        for (int x = 0; x < mask.width; ++x) {
            const std::size_t at =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width) +
                static_cast<std::size_t>(x);
            const int alpha = color.alpha() * mask.coverage[at] / 255;
            image.setPixel(x, y, qRgba(color.red(), color.green(), color.blue(), alpha));
        }
    return image;
}

} // namespace

bool hasSymbol(std::string_view name) { return hostSymbolExtent(name, anyPointSize).has_value(); }

QSizeF symbolSize(std::string_view name, double pointSize) {
    if (!(pointSize > 0)) return {};
    const std::optional<SymbolExtent> extent = hostSymbolExtent(name, pointSize);
    return extent ? QSizeF(extent->width, extent->height) : QSizeF();
}

void drawSymbol(QPainter& painter, std::string_view name, const QRectF& box, const QColor& color) {
    if (box.isEmpty()) return;
    // In the pixels of the device, so that it is sharp on any display.
    const QRectF pixels = painter.deviceTransform().mapRect(box);
    const std::optional<SymbolMask> mask =
        hostSymbolMask(name, static_cast<int>(std::ceil(pixels.width())),
                       static_cast<int>(std::ceil(pixels.height())));
    if (!mask) return;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(box, colored(*mask, color));
    painter.restore();
}

} // namespace tavero
