#include "drawing/WholeBar.h"

#include "drawing/Fraction.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tavero {

namespace {

// Of a battery, as shares of its height.
constexpr double bodyRadius = 0.28;
constexpr double contactWidth = 0.12;
constexpr double contactHeight = 0.36;
constexpr double contactGap = 0.08;

QPainterPath rounded(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

// The left part of an outline. It is cut from the path, for a clip would leave jagged ends.
void fillFromLeft(QPainter& painter, const QPainterPath& outline, double level, const QColor& color,
                  const QColor& track) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, track);
    const double share = fraction(level);
    if (share == 0) return;
    QRectF taken = outline.boundingRect();
    taken.setWidth(taken.width() * share);
    QPainterPath part;
    part.addRect(taken);
    painter.fillPath(outline.intersected(part), color);
}

} // namespace

void drawStorageBar(QPainter& painter, double level, const QRectF& rect, const QColor& color,
                    const QColor& track) {
    if (rect.isEmpty()) return;
    const double radius = std::min(rect.width(), rect.height()) / 2;
    fillFromLeft(painter, rounded(rect, radius), level, color, track);
}

void drawBatteryBar(QPainter& painter, double level, const QRectF& rect, const QColor& color,
                    const QColor& track) {
    const double height = rect.height();
    const double taken = (contactWidth + contactGap) * height;
    const QRectF body = rect.adjusted(0, 0, -taken, 0);
    if (body.isEmpty()) return;
    fillFromLeft(painter, rounded(body, bodyRadius * height), level, color, track);
    QRectF contact(0, 0, contactWidth * height, contactHeight * height);
    contact.moveCenter({rect.right() - contact.width() / 2, rect.center().y()});
    painter.fillPath(rounded(contact, contact.width() / 2), fraction(level) == 1 ? color : track);
}

} // namespace tavero
