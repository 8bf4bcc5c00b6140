#include "menubar/Face.h"

#include "components/Fonts.h"
#include "menubar/MenuBarText.h"

#include <QPainter>
#include <QtGlobal>

#include <cmath>

namespace tavero {

namespace {

constexpr double enlargement = 2; // of the font over the size it stands for

QFont makeFont(double size, QFont::Weight weight) {
    QFont font(uiFontFamily());
    font.setPixelSize(static_cast<int>(size * enlargement));
    font.setWeight(weight);
    // Widths that depend on the number of digits alone, the same at every scale.
    font.setKerning(false);
    font.setHintingPreference(QFont::PreferNoHinting);
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    font.setFeature("tnum", 1); // the bundled font has no other digits, the Mac's own does
#endif
    return font;
}

} // namespace

Face::Face(double size, QFont::Weight weight) : font_(makeFont(size, weight)), metrics_(font_) {}

double Face::width(const std::string& text) const {
    return metrics_.horizontalAdvance(QString::fromStdString(text)) / enlargement;
}

int Face::reservedWidth(const std::string& text) const {
    return static_cast<int>(std::ceil(width(digitsAsEights(text))));
}

void Face::draw(QPainter& painter, const std::string& text, double left, double middle,
                const QColor& color, double shrink) const {
    const double scale = painter.transform().m11();
    const double baseline = middle + metrics_.capHeight() / enlargement * shrink / 2;
    painter.save();
    painter.translate(std::round(left * scale) / scale, std::round(baseline * scale) / scale);
    painter.scale(shrink / enlargement, shrink / enlargement);
    painter.setFont(font_);
    painter.setPen(color);
    painter.drawText(QPointF(0, 0), QString::fromStdString(text));
    painter.restore();
}

const MenuBarFaces& MenuBarFaces::shared() {
    static const MenuBarFaces faces;
    return faces;
}

} // namespace tavero
