#pragma once

#include <QColor>
#include <QImage>
#include <QPolygonF>
#include <QRectF>
#include <QSize>

#include <functional>
#include <string_view>

class QPainter;

namespace tavero {

// What the pictures of the menu bar items are put together from.

inline constexpr QColor templateInk{0, 0, 0};

// The warning of strain, the same in both appearances.
inline constexpr QColor strainInk{0xFF, 0xFF, 0xFF};
inline constexpr QColor strainColor{0xE0, 0x78, 0x2A};
inline constexpr std::string_view strainSymbol = "exclamationmark.triangle.fill";

// A picture of this size in points, drawn on in points from its top left. `scale` is how many
// pixels make a point, and becomes the device pixel ratio.
QImage drawnPicture(QSize size, double scale, const std::function<void(QPainter&)>& draw);

// A curve of `menuBarCurve`; one without points is a flat line that promises one.
void drawCurve(QPainter& painter, const QPolygonF& curve, const QRectF& rect);

// The ring of a share.
void drawShare(QPainter& painter, double share, const QRectF& rect);

// A symbol in the middle of the box: as large as its point size makes it, smaller if the box is.
void drawSymbolIn(QPainter& painter, std::string_view name, double pointSize, const QRectF& box,
                  const QColor& color = templateInk);

} // namespace tavero
