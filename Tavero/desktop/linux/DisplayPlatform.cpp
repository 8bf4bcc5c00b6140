#include "desktop/DisplayPlatform.h"

#include <QByteArray>
#include <QtGlobal>

namespace tavero {

// On Wayland no window may place itself, so the panel and the strip would stand anywhere; through
// its X server they may. What the user asked Qt for stays.
void chooseDisplayPlatform() {
    if (qEnvironmentVariableIsEmpty("DISPLAY") || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    qputenv("QT_QPA_PLATFORM", "xcb;wayland"); // the first that works
}

} // namespace tavero
