#pragma once

#include "desktop/Appearance.h"
#include "desktop/StatusItems.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QString>

namespace tavero {

// The desktop's names as XDG_CURRENT_DESKTOP lists them ("ubuntu:GNOME").
bool isDesktop(const QString& names, const char* name);

// Whether the bar that shows status items is dark. Some desktops' is in every appearance; elsewhere
// it is taken to follow the appearance, for nothing tells.
bool hasDarkBar(const QString& desktops, const Look& look);

// What template pictures are drawn with on a bar.
QColor statusInk(bool isDarkBar);

// The picture as it is to be shown: a template in the ink, another one as it is.
QImage inked(const QImage& image, bool isTemplate, const QColor& ink);

// What a host is offered to choose from, each in device pixels. Most take the size that suits them,
// so there are squares and the wide one. Xfce takes the largest and shrinks it into a square cell,
// so it gets squares only.
QList<QImage> offeredPictures(const StatusPicture& picture, const QString& desktops,
                              const QColor& ink);

} // namespace tavero
