#include "dropdown/PanelPlace.h"

#include <algorithm>

namespace tavero {

namespace {

constexpr int margin = 6;    // from the edges
constexpr int distance = 14; // from the click, which is somewhere in a bar

// The upper end wins if the panel is larger than the space.
int within(int wanted, int least, int most) { return std::max(least, std::min(wanted, most)); }

} // namespace

QPoint panelPlace(QSize panel, QPoint click, QRect available) {
    const QRect space = available.adjusted(margin, margin, -margin, -margin);
    const int rightmost = space.right() + 1 - panel.width();
    const int lowest = space.bottom() + 1 - panel.height();
    if (click.isNull()) return {within(rightmost, space.left(), rightmost), space.top()};

    const bool isBelow = click.y() <= available.center().y();
    const int top = isBelow ? click.y() + distance : click.y() - distance - panel.height();
    return {within(click.x() - panel.width() / 2, space.left(), rightmost),
            within(top, space.top(), lowest)};
}

} // namespace tavero
