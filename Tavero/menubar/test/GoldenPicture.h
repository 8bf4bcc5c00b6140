#pragma once

#include "menubar/test/Samples.h"

#include <QImage>

#include <vector>

namespace tavero {

// The pictures of a group as they are kept: the wide ones side by side, and below them the square
// ones. At scale 2.
QImage goldenPicture(const std::vector<Sample>& samples);

// The largest difference of any channel of any pixel; 255 if the sizes differ.
int largestDifference(const QImage& one, const QImage& other);

} // namespace tavero
