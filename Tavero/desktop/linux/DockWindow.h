#pragma once

#include <QWindow>

namespace tavero {

// Tells an X window manager that the window is a bar at the top edge of the screen, so that it is
// on every desktop, above the others, and maximised windows leave it its space
// (_NET_WM_WINDOW_TYPE_DOCK and _NET_WM_STRUT_PARTIAL). To be called again when it has moved.
// Without X it does nothing.
void makeDock(QWindow& window);

} // namespace tavero
