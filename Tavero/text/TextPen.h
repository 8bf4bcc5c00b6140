#pragma once

#include "presentation/Metric.h"
#include "presentation/MetricStatus.h"

#include <string>
#include <string_view>

namespace tavero {

// Wraps texts in the escape codes of the terminal; leaves them as they are where it is not
// coloured.
struct TextPen {
    bool isColored = false;

    std::string bold(std::string_view text) const;
    std::string dim(std::string_view text) const;
    std::string toned(Tone tone, std::string_view text) const;
    std::string colored(Metric metric, std::string_view text) const;

  private:
    std::string with(std::string_view code, std::string_view text) const;
};

} // namespace tavero
