#include "desktop/linux/StatusNotifierPixmap.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace tavero {

StatusNotifierPixmap pixmapOf(const QImage& image) {
    const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{.width = plain.width(), .height = plain.height()};
    pixmap.argb.resize(qsizetype{4} * plain.width() * plain.height());
    char* line = pixmap.argb.data();
    for (int y = 0; y < plain.height(); ++y, line += qsizetype{4} * plain.width())
        qToBigEndian<quint32>(plain.constScanLine(y), plain.width(), line);
    return pixmap;
}

QDBusArgument& operator<<(QDBusArgument& to, const StatusNotifierPixmap& pixmap) {
    to.beginStructure();
    to << pixmap.width << pixmap.height << pixmap.argb;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, StatusNotifierPixmap& pixmap) {
    from.beginStructure();
    from >> pixmap.width >> pixmap.height >> pixmap.argb;
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const StatusNotifierToolTip& tip) {
    to.beginStructure();
    to << tip.iconName << tip.pixmaps << tip.title << tip.text;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, StatusNotifierToolTip& tip) {
    from.beginStructure();
    from >> tip.iconName >> tip.pixmaps >> tip.title >> tip.text;
    from.endStructure();
    return from;
}

void registerStatusNotifierTypes() {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

} // namespace tavero
