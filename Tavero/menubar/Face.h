#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPointF>

#include <string>

class QPainter;

namespace tavero {

// A font of the menu bar: it measures and draws single lines of text, in points.
class Face {
  public:
    Face(double size, QFont::Weight weight);

    double width(const std::string& text) const;
    // Rounded up, with every digit as wide as any other: what a picture reserves.
    int reservedWidth(const std::string& text) const;

    // Draws from `left`, the capitals and digits centred on `middle`, `shrink` times its size. The
    // painter must be scaled evenly; the text starts and stands on whole pixels of it.
    void draw(QPainter& painter, const std::string& text, double left, double middle,
              const QColor& color, double shrink = 1) const;

  private:
    QFont font_; // twice as large: a font takes whole pixels, and the sizes here have halves
    QFontMetricsF metrics_;
};

// The fonts of the menu bar: created once, on the first call. They need a QGuiApplication.
struct MenuBarFaces {
    Face value{12.5, QFont::Medium};
    Face small{9, QFont::Medium}; // the rows of the network
    Face name{7.5, QFont::Bold};
    Face namedValue{11, QFont::DemiBold};
    Face strain{12, QFont::Medium};
    Face square{14, QFont::DemiBold}; // as large as a number in a square cell gets

    static const MenuBarFaces& shared();
};

} // namespace tavero
