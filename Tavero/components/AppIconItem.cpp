#include "components/AppIconItem.h"

#include <QPainter>

namespace tavero {

AppIconItem::AppIconItem(QQuickItem* parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void AppIconItem::setImage(const QVariant& image) {
    const auto wanted = image.value<QImage>();
    if (image_ == wanted) return;
    image_ = wanted;
    update();
    emit imageChanged();
}

void AppIconItem::setName(const QString& name) {
    if (name_ == name) return;
    name_ = name;
    update();
    emit nameChanged();
}

void AppIconItem::setKind(Kind kind) {
    if (kind_ == kind) return;
    kind_ = kind;
    update();
    emit kindChanged();
}

void AppIconItem::paint(QPainter* painter) {
    if (image_.isNull()) return drawAppTile(*painter, static_cast<TileKind>(kind_), name_, size());
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF({}, size()), image_);
}

} // namespace tavero
