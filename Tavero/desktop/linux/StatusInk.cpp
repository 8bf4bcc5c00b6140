#include "desktop/linux/StatusInk.h"

#include <QPainter>
#include <QStringList>

#include <algorithm>
#include <array>

namespace tavero {

namespace {

constexpr std::array darkBars{"GNOME", "Unity", "XFCE", "sway", "i3", "Hyprland"};

QImage halfOf(const QImage& image) {
    QImage half = image.scaled(image.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    half.setDevicePixelRatio(1);
    return half;
}

} // namespace

bool isDesktop(const QString& names, const char* name) {
    return names.split(':').contains(QLatin1String(name), Qt::CaseInsensitive);
}

bool hasDarkBar(const QString& desktops, const Look& look) {
    return look.isDark || std::any_of(darkBars.begin(), darkBars.end(),
                                      [&](const char* name) { return isDesktop(desktops, name); });
}

QColor statusInk(bool isDarkBar) { return isDarkBar ? QColor(0xF4F4F6) : QColor(0x1C1C1F); }

QImage inked(const QImage& image, bool isTemplate, const QColor& ink) {
    if (!isTemplate || image.isNull()) return image;
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(), result.size()), ink);
    return result;
}

QList<QImage> offeredPictures(const StatusPicture& picture, const QString& desktops,
                              const QColor& ink) {
    QList<QImage> offered;
    if (!picture.square.isNull()) {
        const QImage square = inked(picture.square, picture.isTemplate, ink);
        offered = {halfOf(square), square};
    }
    const bool takesTheLargest = isDesktop(desktops, "XFCE");
    if (!picture.wide.isNull() && !(takesTheLargest && !offered.isEmpty()))
        offered.append(inked(picture.wide, picture.isTemplate, ink));
    return offered;
}

} // namespace tavero
