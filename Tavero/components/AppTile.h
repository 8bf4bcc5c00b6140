#pragma once

#include <QColor>
#include <QSizeF>
#include <QString>

class QPainter;

namespace tavero {

// What stands in for the icon of an app that has none: a rounded tile with its initial, with a
// prompt for a tool, with a gear for the operating system.
enum class TileKind { app, tool, system };

// An app keeps its colour: it follows from the name. White reads well on it.
QColor tileColor(TileKind kind, const QString& name);

// The first letter or digit of the name, in upper case if it has one. Empty if there is none.
QString tileInitial(const QString& name);

// Draws the tile over the whole size. Needs a QGuiApplication for the letter.
void drawAppTile(QPainter& painter, TileKind kind, const QString& name, QSizeF size);

} // namespace tavero
