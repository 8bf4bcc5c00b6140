#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QString>

namespace tavero {

// A picture as status items send it over D-Bus, signature (iiay).
struct StatusNotifierPixmap {
    int width = 0; // pixels
    int height = 0;
    QByteArray argb; // 4 bytes a pixel in this order, alpha not multiplied in, line by line

    bool operator==(const StatusNotifierPixmap&) const = default;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

// A tooltip as status items send it, signature (sa(iiay)ss).
struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps pixmaps;
    QString title;
    QString text;

    bool operator==(const StatusNotifierToolTip&) const = default;
};

StatusNotifierPixmap pixmapOf(const QImage& image);

QDBusArgument& operator<<(QDBusArgument& to, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& from, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& to, const StatusNotifierToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& from, StatusNotifierToolTip& tip);

// Makes the two known to Qt's D-Bus. Any number of times.
void registerStatusNotifierTypes();

} // namespace tavero

Q_DECLARE_METATYPE(tavero::StatusNotifierPixmap)
Q_DECLARE_METATYPE(tavero::StatusNotifierToolTip)
