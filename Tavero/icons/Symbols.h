#pragma once

#include <QColor>
#include <QRectF>
#include <QSizeF>

#include <string_view>

class QPainter;

namespace tavero {

// The pictures that symbol names stand for ("internaldrive"). On the Mac the system's own symbols,
// elsewhere outlines of an openly licensed set.

bool hasSymbol(std::string_view name);

// The space that a symbol takes at a font's point size; empty for a name without a picture.
QSizeF symbolSize(std::string_view name, double pointSize);

// Draws it as large as fits into the box, centred. A name without a picture draws nothing.
void drawSymbol(QPainter& painter, std::string_view name, const QRectF& box, const QColor& color);

} // namespace tavero
