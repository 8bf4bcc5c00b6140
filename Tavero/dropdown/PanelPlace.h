#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace tavero {

// Where the corner of a panel of this size goes that a click at `click` opens: below it, or above
// it where the click is in the lower half, with its middle at the click as far as the panel fits
// into the part of the screen that applications have. A null click is an unknown one: the top
// right.
QPoint panelPlace(QSize panel, QPoint click, QRect available);

} // namespace tavero
