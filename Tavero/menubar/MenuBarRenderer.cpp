#include "menubar/MenuBarRenderer.h"

#include "drawing/Mark.h"
#include "icons/Symbols.h"
#include "menubar/ExtraMenuBarItem.h"
#include "menubar/Face.h"
#include "menubar/ItemParts.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tavero::MenuBarRenderer {

namespace {

constexpr double middle = height / 2.0;

// The icon of a metric, in a square; more is free to the right of it.
constexpr double iconPointSize = 11;
constexpr double iconSide = 14;
constexpr int iconBox = 18;

constexpr int ringWidth = 13;
constexpr int curveWidth = 26;
constexpr double curveHeight = 12;
constexpr int graphGap = 4; // to the value

// Below a small name, half a point from the bottom.
constexpr double smallRing = 9;
constexpr double smallCurveHeight = 8;
constexpr double smallGraphBottom = height - 0.5;

// Middles of the lines of text, from the top.
constexpr double nameOverGraph = 6.5 / 2;
constexpr double nameOverValue = 7.5 / 2;
constexpr double valueUnderName =
    12.5; // of a band 12 high that ends half a point below the picture
constexpr double upperRow = height / 4.0;
constexpr double lowerRow = height * 3 / 4.0;

const QColor nameInk = QColor::fromRgbF(0, 0, 0, 0.6F);

constexpr double extraPointSize = 13; // of the sound and Bluetooth items
constexpr int extraGap = 3;

// Where the parts of a metric's item stand.
struct Plan {
    int icon = 0; // width of the box
    int graph = 0;
    int gap = 0;
    int value = 0;

    int width() const { return std::max(icon + graph + gap + value, 1); }
};

bool hasNameOverGraph(const MetricContent& item) { return item.showsName && !item.showsValue(); }
bool hasNameOverValue(const MetricContent& item) { return item.showsName && item.showsValue(); }

int graphWidth(const MetricContent& item) {
    const int width = hasRing(item.metric) ? ringWidth : curveWidth;
    if (!hasNameOverGraph(item)) return width;
    return std::max(width, MenuBarFaces::shared().name.reservedWidth(item.name));
}

int valueWidth(const MetricContent& item) {
    const MenuBarFaces& faces = MenuBarFaces::shared();
    if (item.metric == Metric::network)
        return std::max(faces.small.reservedWidth(item.rows.up),
                        faces.small.reservedWidth(item.rows.down));
    if (!hasNameOverValue(item)) return faces.value.reservedWidth(item.value);
    return std::max(faces.namedValue.reservedWidth(item.value),
                    faces.name.reservedWidth(item.name));
}

Plan plan(const MetricContent& item) {
    Plan plan;
    if (hasSymbol(symbol(item.metric))) plan.icon = iconBox;
    if (item.showsGraph()) plan.graph = graphWidth(item);
    if (item.showsValue()) plan.value = valueWidth(item);
    if (item.showsGraph() && item.showsValue()) plan.gap = graphGap;
    return plan;
}

void drawGraph(QPainter& painter, const MetricContent& item, double left, double width) {
    const bool isSmall = hasNameOverGraph(item);
    if (isSmall) MenuBarFaces::shared().name.draw(painter, item.name, left, nameOverGraph, nameInk);
    const double side = isSmall ? smallRing : ringWidth;
    const QSizeF size = hasRing(item.metric)
                            ? QSizeF(side, side)
                            : QSizeF(width, isSmall ? smallCurveHeight : curveHeight);
    const double top = isSmall ? smallGraphBottom - size.height() : middle - size.height() / 2;
    const QRectF rect({left, top}, size);
    if (hasRing(item.metric))
        drawShare(painter, item.share, rect);
    else
        drawCurve(painter, item.curve, rect);
}

// Right-aligned, so that the digits stay in place when the number gets shorter.
void drawRight(QPainter& painter, const Face& face, const std::string& text, double right,
               double line, const QColor& color = templateInk) {
    face.draw(painter, text, right - face.width(text), line, color);
}

void drawValue(QPainter& painter, const MetricContent& item, double left, double right) {
    const MenuBarFaces& faces = MenuBarFaces::shared();
    if (item.metric == Metric::network) {
        drawRight(painter, faces.small, item.rows.up, right, upperRow);
        drawRight(painter, faces.small, item.rows.down, right, lowerRow);
    } else if (item.showsName) {
        faces.name.draw(painter, item.name, left, nameOverValue, nameInk);
        faces.namedValue.draw(painter, item.value, left, valueUnderName, templateInk);
    } else {
        drawRight(painter, faces.value, item.value, right, middle);
    }
}

QImage metricImage(const MetricContent& item, double scale) {
    const Plan parts = plan(item);
    return drawnPicture({parts.width(), height}, scale, [&](QPainter& painter) {
        const QRectF icon(0, (height - iconSide) / 2, iconSide, iconSide);
        if (parts.icon > 0) drawSymbolIn(painter, symbol(item.metric), iconPointSize, icon);
        if (parts.graph > 0) drawGraph(painter, item, parts.icon, parts.graph);
        const int left = parts.icon + parts.graph + parts.gap;
        if (parts.value > 0) drawValue(painter, item, left, parts.width());
    });
}

QImage titleImage(const TitleContent& item, double scale) {
    const Face& face = MenuBarFaces::shared().value;
    const std::string text(title(item.metric));
    return drawnPicture({face.reservedWidth(text), height}, scale, [&](QPainter& painter) {
        face.draw(painter, text, 0, middle, templateInk);
    });
}

QImage markImage(const MarkContent& item, double scale) {
    return drawnPicture(markSize.toSize(), scale, [&](QPainter& painter) {
        drawMark(painter, {0, 0}, templateInk, item.updateReady);
    });
}

QSizeF extraSize(std::string_view symbol) {
    QSizeF size = symbolSize(symbol, extraPointSize);
    if (size.height() > height) size.scale(size.width(), height, Qt::KeepAspectRatio);
    return size;
}

int roundedUp(double width) { return std::max(static_cast<int>(std::ceil(width)), 1); }

// As wide as the widest speaker: the item doesn't move what stands beside it.
QImage soundImage(const SoundContent& item, double scale) {
    double width = 0;
    for (const std::string_view symbol : ExtraMenuBarItem::soundSymbols)
        width = std::max(width, extraSize(symbol).width());
    return drawnPicture({roundedUp(width), height}, scale, [&](QPainter& painter) {
        const QRectF box(0, 0, extraSize(item.symbol).width(), height);
        drawSymbolIn(painter, item.symbol, extraPointSize, box);
    });
}

QImage bluetoothImage(const BluetoothContent& item, double scale) {
    const Face& face = MenuBarFaces::shared().value;
    const std::string symbol =
        item.device ? item.device->symbol : std::string(ExtraMenuBarItem::bluetoothSymbol);
    const std::string text = item.device ? std::to_string(item.device->percent) + "%" : "";
    const int icon = roundedUp(extraSize(symbol).width());
    const int width = text.empty() ? icon : icon + extraGap + face.reservedWidth(text);
    return drawnPicture({width, height}, scale, [&](QPainter& painter) {
        drawSymbolIn(painter, symbol, extraPointSize, QRectF(0, 0, icon, height));
        drawRight(painter, face, text, width, middle);
    });
}

struct Drawer {
    double scale;

    QImage operator()(const TitleContent& item) const { return titleImage(item, scale); }
    QImage operator()(const MetricContent& item) const { return metricImage(item, scale); }
    QImage operator()(const Strain& strain) const { return strainImage(strain, scale); }
    QImage operator()(const MarkContent& item) const { return markImage(item, scale); }
    QImage operator()(const SoundContent& item) const { return soundImage(item, scale); }
    QImage operator()(const BluetoothContent& item) const { return bluetoothImage(item, scale); }
};

} // namespace

QImage image(Metric metric, MenuBarItemMode mode, const LiveSnapshot& snapshot,
             std::span<const GraphPoint> history, const MenuBarLook& look, double scale) {
    return metricImage(metricContent(metric, mode, snapshot, history, look), scale);
}

QImage strainImage(const Strain& strain, double scale) {
    constexpr double radius = 5;
    constexpr double symbolPointSize = 11;
    constexpr QSizeF symbolBox{13, 12};
    constexpr int left = 7;
    constexpr int textLeft = 25;
    constexpr int right = 7;
    const Face& face = MenuBarFaces::shared().strain;
    const int width = textLeft + face.reservedWidth(strain.text) + right;
    return drawnPicture({width, height}, scale, [&](QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(strainColor);
        painter.drawRoundedRect(QRectF(0, 0, width, height), radius, radius);
        const QRectF box({left, (height - symbolBox.height()) / 2}, symbolBox);
        drawSymbolIn(painter, strainSymbol, symbolPointSize, box, strainInk);
        drawRight(painter, face, strain.text, width - right, middle, strainInk);
    });
}

QImage image(const ItemContent& content, double scale) {
    return std::visit(Drawer{scale}, content);
}

} // namespace tavero::MenuBarRenderer
