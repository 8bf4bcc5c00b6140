#pragma once

#include <QQuickWindow>

namespace tavero {

// For our drawings it takes less of the machine than a graphics context, in memory above all. It
// counts for the life of the program, from its first window on: to be called before that one.
inline void paintInSoftware() {
    if (QQuickWindow::sceneGraphBackend() != "software")
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace tavero
