#include "menubar/test/GoldenPicture.h"

#include "menubar/MenuBarRenderer.h"

#include <QPainter>

#include <algorithm>
#include <cstdlib>

namespace tavero {

namespace {

constexpr int scale = 2;
constexpr int gap = 4; // pixels

QImage inARow(const std::vector<QImage>& images) {
    QSize size;
    for (const QImage& image : images)
        size = {size.width() + image.width() + gap, std::max(size.height(), image.height())};
    QImage row(size, QImage::Format_ARGB32_Premultiplied);
    row.fill(Qt::transparent);
    QPainter painter(&row);
    int x = 0;
    for (QImage image : images) {
        image.setDevicePixelRatio(1);
        painter.drawImage(x, 0, image);
        x += image.width() + gap;
    }
    return row;
}

} // namespace

QImage goldenPicture(const std::vector<Sample>& samples) {
    std::vector<QImage> wide;
    std::vector<QImage> square;
    for (const Sample& sample : samples) {
        wide.push_back(MenuBarRenderer::image(sample.content, scale));
        square.push_back(MenuBarRenderer::squareImage(sample.content, scale));
    }
    const QImage upper = inARow(wide);
    const QImage lower = inARow(square);
    QImage picture(std::max(upper.width(), lower.width()), upper.height() + gap + lower.height(),
                   QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.drawImage(0, 0, upper);
    painter.drawImage(0, upper.height() + gap, lower);
    return picture;
}

int largestDifference(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) return 255;
    const QImage a = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width() * 4; ++x)
            largest = std::max(largest, std::abs(a.constScanLine(y)[x] - b.constScanLine(y)[x]));
    return largest;
}

} // namespace tavero
