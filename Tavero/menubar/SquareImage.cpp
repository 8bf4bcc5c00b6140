#include "drawing/Mark.h"
#include "menubar/ExtraMenuBarItem.h"
#include "menubar/Face.h"
#include "menubar/ItemParts.h"
#include "menubar/MenuBarRenderer.h"

#include <QPainter>

#include <algorithm>
#include <string>

namespace tavero::MenuBarRenderer {

namespace {

constexpr double side = squareSide;
constexpr QRectF cell{0, 0, side, side};

// A small thing above a large one.
constexpr double nameMiddle = 4.25;
constexpr double valueMiddle = 15.5;
constexpr QRectF smallIcon{6.5, 0, 9, 9};
constexpr QRectF lowerPart{1, 9, 20, 12};

constexpr double iconPointSize = 16;
constexpr QRectF iconPlace{2, 2, 18, 18};
constexpr double iconInRing = 10;
constexpr double insideRing = 14; // for text

const QColor nameInk = QColor::fromRgbF(0, 0, 0, 0.6F);

// How much smaller a text must be to fit. Digits count as equal.
double shrinkToFit(const Face& face, const std::string& text, double width) {
    const double reserved = face.width(digitsAsEights(text));
    return reserved > width ? width / reserved : 1;
}

void drawCentred(QPainter& painter, const Face& face, const std::string& text, double middle,
                 double shrink, const QColor& color = templateInk) {
    face.draw(painter, text, (side - face.width(text) * shrink) / 2, middle, color, shrink);
}

// In the middle of the cell, as large as a width allows.
void drawFitted(QPainter& painter, const Face& face, const std::string& text, double middle,
                double width = side, const QColor& color = templateInk) {
    drawCentred(painter, face, text, middle, shrinkToFit(face, text, width), color);
}

void drawName(QPainter& painter, const MetricContent& item) {
    if (item.showsName)
        drawFitted(painter, MenuBarFaces::shared().name, item.name, nameMiddle, side, nameInk);
    else
        drawSymbolIn(painter, symbol(item.metric), iconPointSize, smallIcon);
}

// Without the blank behind the arrow there is room for the digits.
std::string tight(std::string row) {
    std::erase(row, ' ');
    return row;
}

void drawRows(QPainter& painter, const NetworkRows& rows) {
    const Face& face = MenuBarFaces::shared().namedValue;
    // Both in the size of the longer one.
    const double shrink = std::min(shrinkToFit(face, tight(rows.up), side),
                                   shrinkToFit(face, tight(rows.down), side));
    drawCentred(painter, face, tight(rows.up), side / 4, shrink);
    drawCentred(painter, face, tight(rows.down), side * 3 / 4, shrink);
}

void drawNumber(QPainter& painter, const MetricContent& item) {
    if (item.metric == Metric::network) return drawRows(painter, item.rows);
    drawName(painter, item);
    drawFitted(painter, MenuBarFaces::shared().square, item.shortValue, valueMiddle);
}

void drawGraph(QPainter& painter, const MetricContent& item) {
    if (hasRing(item.metric)) {
        QRectF inside(0, 0, iconInRing, iconInRing);
        inside.moveCenter(cell.center());
        drawShare(painter, item.share, cell.adjusted(1, 1, -1, -1));
        drawSymbolIn(painter, symbol(item.metric), iconPointSize, inside);
    } else {
        drawName(painter, item);
        drawCurve(painter, item.curve, lowerPart);
    }
}

// A ring with its number inside, or a number over its curve.
void drawBoth(QPainter& painter, const MetricContent& item) {
    const Face& face = MenuBarFaces::shared().namedValue;
    if (hasRing(item.metric)) {
        drawShare(painter, item.share, cell);
        drawFitted(painter, face, item.shortValue, side / 2, insideRing);
        return;
    }
    const std::string text =
        item.metric == Metric::network ? tight(item.rows.down) : item.shortValue;
    drawFitted(painter, face, text, 5);
    drawCurve(painter, item.curve, lowerPart.adjusted(0, 1, 0, 0));
}

struct SquareDrawer {
    QPainter& painter;

    void operator()(const TitleContent& item) const {
        drawSymbolIn(painter, symbol(item.metric), iconPointSize, iconPlace);
    }
    void operator()(const MetricContent& item) const {
        if (!item.showsGraph()) return drawNumber(painter, item);
        if (!item.showsValue()) return drawGraph(painter, item);
        drawBoth(painter, item);
    }
    void operator()(const Strain& strain) const {
        painter.setPen(Qt::NoPen);
        painter.setBrush(strainColor);
        painter.drawRoundedRect(cell, 5, 5);
        drawSymbolIn(painter, strainSymbol, iconPointSize, {6, 1.5, 10, 9}, strainInk);
        drawFitted(painter, MenuBarFaces::shared().namedValue, strain.value, 15.5, side - 3,
                   strainInk);
    }
    void operator()(const MarkContent& item) const {
        drawMark(painter, {(side - markSize.width()) / 2, (side - markSize.height()) / 2},
                 templateInk, item.updateReady);
    }
    void operator()(const SoundContent& item) const {
        drawSymbolIn(painter, item.symbol, iconPointSize, iconPlace);
    }
    void operator()(const BluetoothContent& item) const {
        if (!item.device)
            return drawSymbolIn(painter, ExtraMenuBarItem::bluetoothSymbol, iconPointSize,
                                iconPlace);
        drawSymbolIn(painter, item.device->symbol, iconPointSize, smallIcon);
        drawFitted(painter, MenuBarFaces::shared().square, std::to_string(item.device->percent),
                   valueMiddle);
    }
};

} // namespace

QImage squareImage(const ItemContent& content, double scale) {
    return drawnPicture({squareSide, squareSide}, scale,
                        [&](QPainter& painter) { std::visit(SquareDrawer{painter}, content); });
}

} // namespace tavero::MenuBarRenderer
