#include "menubar/ItemParts.h"

#include "drawing/Ring.h"
#include "icons/Symbols.h"

#include <QPainter>
#include <QPen>

#include <cmath>

namespace tavero {

namespace {

constexpr double curveWidth = 1.4;
constexpr double promiseWidth = 1.2;
constexpr double ringWidth = 2.5;

QColor faded(float opacity) { return QColor::fromRgbF(0, 0, 0, opacity); }

const QColor promiseInk = faded(0.3F);
const QColor trackInk = faded(0.25F);

} // namespace

QImage drawnPicture(QSize size, double scale, const std::function<void(QPainter&)>& draw) {
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    draw(painter);
    painter.end();
    image.setDevicePixelRatio(scale);
    return image;
}

void drawCurve(QPainter& painter, const QPolygonF& curve, const QRectF& rect) {
    const double bottom = rect.bottom() - 1;
    painter.setBrush(Qt::NoBrush);
    if (curve.isEmpty()) {
        painter.setPen(QPen(promiseInk, promiseWidth, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(rect.left(), bottom), QPointF(rect.right(), bottom));
        return;
    }
    QPolygonF line;
    line.reserve(curve.size());
    for (const QPointF& point : curve)
        line.append(
            {rect.left() + rect.width() * point.x(), bottom - (rect.height() - 2) * point.y()});
    painter.setPen(QPen(templateInk, curveWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPolyline(line);
}

void drawShare(QPainter& painter, double share, const QRectF& rect) {
    drawRing(painter, share, rect, ringWidth, templateInk, trackInk);
}

void drawSymbolIn(QPainter& painter, std::string_view name, double pointSize, const QRectF& box,
                  const QColor& color) {
    QSizeF size = symbolSize(name, pointSize);
    if (size.width() > box.width() || size.height() > box.height())
        size.scale(box.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(0, 0), size);
    place.moveCenter(box.center());
    drawSymbol(painter, name, place, color);
}

} // namespace tavero
