#include "components/Palette.h"

#include <algorithm>
#include <cmath>

namespace tavero {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& from, const QColor& to, float part) {
    const auto channel = [part](float a, float b) { return a + (b - a) * part; };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()));
}

} // namespace

Palette Palette::of(bool isDark) {
    if (isDark)
        return {.window = QColor(0x1B1B1D),
                .card = QColor(0x28282A),
                .cardBorder = QColor(0x38383B),
                .text = QColor(0xF4F4F6),
                .secondaryText = QColor(0xB4B4BA),
                .tertiaryText = QColor(0x96969D),
                .track = QColor(0x3A3A3D),
                .focus = QColor(0x5FB0F2)};
    return {.window = QColor(0xF3F4F6),
            .card = QColor(0xFFFFFF),
            .cardBorder = QColor(0xE2E4E9),
            .text = QColor(0x1C1C1F),
            .secondaryText = QColor(0x54565C),
            .tertiaryText = QColor(0x696B72),
            .track = QColor(0xE6E8EC),
            .focus = QColor(0x2772AF)};
}

QColor toQColor(Color color) { return QColor::fromRgb(color.rgb | 0xFF000000); }

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readable(const QColor& color, const QColor& background) {
    const bool isOnDark =
        contrast(background, QColor(Qt::white)) > contrast(background, QColor(Qt::black));
    const QColor end = isOnDark ? Qt::white : Qt::black;
    constexpr int steps = 20;
    QColor text = color;
    for (int step = 1; step <= steps && contrast(text, background) < readableContrast; ++step)
        text = mixed(color, end, static_cast<float>(step) / steps);
    return text;
}

} // namespace tavero
