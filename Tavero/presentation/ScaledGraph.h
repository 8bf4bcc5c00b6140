#pragma once

#include "presentation/Format.h"
#include "presentation/Metric.h"

#include <array>
#include <optional>
#include <string>

namespace tavero {

// What the top of a metric's graph stands for. `top` is the rate that Graphs::top() tells, in bytes
// a second; absent for curves of fractions. Empty where the curve has no scale of its own: that of
// the power is a share of a battery or of a draw, that of the temperature has no meaning beside its
// figure.
std::string graphScale(Metric metric, std::optional<double> top, const Format& format);

// Where the hairlines of a graph so high lie: top, middle and bottom, each half a pixel inside so
// that none is cut.
std::array<double, 3> hairlines(double height);

} // namespace tavero
