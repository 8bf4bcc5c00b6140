#pragma once

#include <QColor>

namespace tavero {

// The colours of the strip and of its tooltip.
struct StripColors {
    QColor background;
    QColor line; // a hairline around
    QColor hovered;
    QColor pressed;
    QColor tip;
    QColor tipText;

    static StripColors of(bool isDark) {
        if (isDark)
            return {.background = QColor(0x1B1B1D),
                    .line = QColor(0x3F3F43),
                    .hovered = QColor(255, 255, 255, 28),
                    .pressed = QColor(255, 255, 255, 52),
                    .tip = QColor(0xF4F4F6),
                    .tipText = QColor(0x1B1B1D)};
        return {.background = QColor(0xF3F4F6),
                .line = QColor(0xCBCED5),
                .hovered = QColor(0, 0, 0, 18),
                .pressed = QColor(0, 0, 0, 38),
                .tip = QColor(0x1C1C1F),
                .tipText = QColor(0xF3F4F6)};
    }
};

} // namespace tavero
