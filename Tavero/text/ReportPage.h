#pragma once

#include "insights/InsightsContent.h"
#include "text/TextPage.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The report on the last days as lines of UTF-8 text, like textPage(). The content is absent while
// there is no report.
std::vector<std::string> reportPage(const std::optional<InsightsContent>& content, int days,
                                    const TextStyle& style);

} // namespace tavero
