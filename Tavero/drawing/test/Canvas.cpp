#include "drawing/test/Canvas.h"

namespace tavero {

QImage drawnOn(QSize size, const std::function<void(QPainter&)>& draw) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    return image;
}

QRect inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() > 0) ink |= QRect(x, y, 1, 1);
    return ink;
}

double inkAt(const QImage& image, int x, int y) { return image.pixelColor(x, y).alphaF(); }

} // namespace tavero
