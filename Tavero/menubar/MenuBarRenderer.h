#pragma once

#include "menubar/ItemContent.h"
#include "menubar/MetricContent.h"

#include <QImage>

#include <span>

// Draws the items of the menu bar. The pictures are templates, black ink on clear, except for those
// of strain. `scale` is how many pixels make a point. Needs a QGuiApplication.
namespace tavero::MenuBarRenderer {

inline constexpr int height = 18;     // points, of what a menu bar shows
inline constexpr int squareSide = 22; // points, of what a square cell shows

// What a metric's item shows: its icon, then a ring or a curve, then a number, as the mode says.
// The width depends on how many digits the number has, not on which.
QImage image(Metric metric, MenuBarItemMode mode, const LiveSnapshot& snapshot,
             std::span<const GraphPoint> history, const MenuBarLook& look, double scale);

// The warning: white on orange.
QImage strainImage(const Strain& strain, double scale);

// Whatever an item shows, as wide as it needs to be.
QImage image(const ItemContent& content, double scale);

// The same for the cell of a host that has square ones only: the number alone is as large as it can
// be, below its small name; a graph fills the cell.
QImage squareImage(const ItemContent& content, double scale);

} // namespace tavero::MenuBarRenderer
