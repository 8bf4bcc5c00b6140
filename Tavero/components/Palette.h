#pragma once

#include "presentation/Color.h"

#include <QColor>

namespace tavero {

// The colours of all surfaces, by what they are for. Those of metrics, levels and tones belong to
// the presentation. Text reads on `window` and on `card` alike.
struct Palette {
    QColor window;     // behind everything
    QColor card;       // what lies on it
    QColor cardBorder; // a hairline
    QColor text;
    QColor secondaryText;
    QColor tertiaryText;
    QColor track; // the empty part of a bar
    QColor focus; // the ring around what has the keyboard

    static Palette of(bool isDark);
};

QColor toQColor(Color color);

// The colour that belongs to the appearance.
inline QColor pick(const AdaptiveColor& color, bool isDark) {
    return toQColor(isDark ? color.dark : color.light);
}

// How far apart two colours are in brightness, from 1 (alike) to 21 (black and white): the contrast
// ratio of the accessibility guidelines for the web.
double contrast(const QColor& a, const QColor& b);

// The least contrast at which small text is easy to read.
inline constexpr double readableContrast = 4.5;

// `color` as text on `background`: the colour itself if it reads well there, else as much lighter
// or darker as it takes.
QColor readable(const QColor& color, const QColor& background);

} // namespace tavero
