#include "icons/Symbols.h"

#include "icons/SymbolOutlines.h"

#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

#include <algorithm>
#include <cstddef>

namespace tavero {

namespace {

constexpr double sideOfPoint = 1.25; // a symbol stands a bit taller than capitals

const SymbolEntry* entryOf(std::string_view name) {
    const std::span<const SymbolEntry> entries = symbolOutlines.entries;
    const auto found = std::lower_bound(
        entries.begin(), entries.end(), name,
        [](const SymbolEntry& entry, std::string_view wanted) { return entry.name < wanted; });
    return found != entries.end() && found->name == name ? &*found : nullptr;
}

// Reads the points of a shape, one after the other.
class Points {
  public:
    explicit Points(const SymbolShape& shape) : next_(shape.firstPoint) {}

    QPointF next() {
        const double x = symbolOutlines.points[next_++];
        const double y = symbolOutlines.points[next_++];
        return QPointF(x, y) / symbolOutlines.unit;
    }

  private:
    std::size_t next_;
};

QPainterPath outline(const SymbolShape& shape) {
    QPainterPath path;
    Points points(shape);
    for (const char command :
         symbolOutlines.commands.substr(shape.firstCommand, shape.commandCount)) {
        if (command == 'M') {
            path.moveTo(points.next());
        } else if (command == 'L') {
            path.lineTo(points.next());
        } else if (command == 'C') {
            const QPointF first = points.next();
            const QPointF second = points.next();
            path.cubicTo(first, second, points.next());
        } else {
            path.closeSubpath();
        }
    }
    path.setFillRule(shape.isEvenOdd ? Qt::OddEvenFill : Qt::WindingFill);
    if (shape.strokeWidth == 0) return path;
    QPainterPathStroker pen;
    pen.setWidth(shape.strokeWidth / symbolOutlines.unit);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen.createStroke(path);
}

} // namespace

bool hasSymbol(std::string_view name) { return entryOf(name) != nullptr; }

QSizeF symbolSize(std::string_view name, double pointSize) {
    if (!hasSymbol(name) || !(pointSize > 0)) return {};
    return {pointSize * sideOfPoint, pointSize * sideOfPoint};
}

void drawSymbol(QPainter& painter, std::string_view name, const QRectF& box, const QColor& color) {
    const SymbolEntry* entry = entryOf(name);
    const double side = std::min(box.width(), box.height());
    if (!entry || !(side > 0)) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.center() - QPointF(side, side) / 2);
    painter.scale(side / symbolOutlines.side, side / symbolOutlines.side);
    for (const SymbolShape& shape :
         symbolOutlines.shapes.subspan(entry->firstShape, entry->shapeCount))
        painter.fillPath(outline(shape), color);
    painter.restore();
}

} // namespace tavero
