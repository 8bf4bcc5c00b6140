#include "components/SymbolIconItem.h"

#include "icons/Symbols.h"

namespace tavero {

SymbolIconItem::SymbolIconItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

void SymbolIconItem::setSymbol(const QString& symbol) {
    if (symbol_ == symbol) return;
    symbol_ = symbol;
    update();
    emit symbolChanged();
}

void SymbolIconItem::setColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    update();
    emit colorChanged();
}

void SymbolIconItem::paint(QPainter* painter) {
    drawSymbol(*painter, symbol_.toStdString(), QRectF({}, size()), color_);
}

} // namespace tavero
