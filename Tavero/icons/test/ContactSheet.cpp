// Draws every symbol beside its name, small and large, for whoever chooses pictures:
//   tavero-contact-sheet FILE.png

#include "icons/Symbols.h"
#include "presentation/SymbolNames.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace tavero {
namespace {

constexpr int columns = 6;
constexpr int cellWidth = 230;
constexpr int cellHeight = 64;

void drawCell(QPainter& painter, std::string_view name, QPointF at) {
    drawSymbol(painter, name, {at + QPointF(8, 10), QSizeF(14, 14)}, Qt::black);
    drawSymbol(painter, name, {at + QPointF(34, 6), QSizeF(44, 44)}, QColor(0x2772AF));
    painter.setPen(Qt::black);
    painter.drawText(QRectF(at + QPointF(84, 4), QSizeF(cellWidth - 86, cellHeight - 8)),
                     Qt::AlignVCenter | Qt::TextWrapAnywhere,
                     QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
}

QImage sheet() {
    const int count = static_cast<int>(symbolNames.size());
    QImage image(columns * cellWidth, (count + columns - 1) / columns * cellHeight,
                 QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int at = 0; at < count; ++at)
        drawCell(painter, symbolNames[static_cast<std::size_t>(at)],
                 QPointF(at % columns * cellWidth, at / columns * cellHeight));
    return image;
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("usage: tavero-contact-sheet FILE.png\n", stderr);
        return 2;
    }
    return tavero::sheet().save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
