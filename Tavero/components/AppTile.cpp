#include "components/AppTile.h"

#include "components/Fonts.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavero {

namespace {

constexpr std::array<QRgb, 8> appColors{0x2B6CB0, 0x5158BB, 0x7E4FB0, 0xA8407F,
                                        0xB8433F, 0xA0561B, 0x2F7D4F, 0x1F7A80};
constexpr QRgb toolColor = 0x4A4D55;
constexpr QRgb systemColor = 0x6B6E76;

// The same on every run and every machine, which qHash() isn't: FNV-1a.
std::uint32_t fingerprint(const QString& name) {
    std::uint32_t hash = 2166136261u;
    for (const char byte : name.toUtf8())
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
    return hash;
}

void drawInitial(QPainter& painter, const QString& name, double side) {
    QFont font(uiFontFamily());
    font.setPixelSize(std::max(1, static_cast<int>(side * 0.56)));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, tileInitial(name));
}

// ">_"
void drawPrompt(QPainter& painter, double side) {
    QPen pen(Qt::white, side * 0.085, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPainterPath path;
    path.moveTo(side * 0.26, side * 0.33);
    path.lineTo(side * 0.43, side * 0.50);
    path.lineTo(side * 0.26, side * 0.67);
    path.moveTo(side * 0.53, side * 0.67);
    path.lineTo(side * 0.74, side * 0.67);
    painter.drawPath(path);
}

void drawGear(QPainter& painter, double side) {
    constexpr int teeth = 8;
    QPainterPath gear;
    gear.addEllipse(QPointF(), side * 0.24, side * 0.24);
    QPainterPath tooth;
    tooth.addRoundedRect(QRectF(-side * 0.055, -side * 0.33, side * 0.11, side * 0.16), side * 0.03,
                         side * 0.03);
    for (int at = 0; at < teeth; ++at)
        gear = gear.united(QTransform().rotate(360.0 / teeth * at).map(tooth));
    QPainterPath hole;
    hole.addEllipse(QPointF(), side * 0.105, side * 0.105);
    painter.fillPath(gear.subtracted(hole).translated(side / 2, side / 2), Qt::white);
}

} // namespace

QColor tileColor(TileKind kind, const QString& name) {
    switch (kind) {
    case TileKind::tool:
        return QColor(toolColor);
    case TileKind::system:
        return QColor(systemColor);
    case TileKind::app:
        break;
    }
    return QColor(appColors[fingerprint(name) % appColors.size()]);
}

QString tileInitial(const QString& name) {
    for (const char32_t letter : name.toUcs4())
        if (QChar::isLetterOrNumber(letter)) {
            const char32_t upper = QChar::toUpper(letter);
            return QString::fromUcs4(&upper, 1);
        }
    return {};
}

void drawAppTile(QPainter& painter, TileKind kind, const QString& name, QSizeF size) {
    const double side = std::min(size.width(), size.height());
    if (!(side > 0)) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate((size.width() - side) / 2, (size.height() - side) / 2);
    // App icons leave a rim; a tile without one would look larger than they do.
    QPainterPath tile;
    const double rim = side * 0.04;
    tile.addRoundedRect(QRectF(rim, rim, side - 2 * rim, side - 2 * rim), side * 0.22, side * 0.22);
    painter.fillPath(tile, tileColor(kind, name));
    if (kind == TileKind::app) drawInitial(painter, name, side);
    if (kind == TileKind::tool) drawPrompt(painter, side);
    if (kind == TileKind::system) drawGear(painter, side);
    painter.restore();
}

} // namespace tavero
