#pragma once

#include "history/InsightsReport.h"
#include "presentation/Format.h"
#include "presentation/Section.h"

#include <string>
#include <vector>

namespace tavero {

// Something that stood out in a period.
struct Finding {
    std::string title;
    std::string detail;
    Section section = Section::overview; // the page that tells more

    // What stood out in a report, in the order to show it.
    static std::vector<Finding> make(const InsightsReport& report, const Format& format);

    bool operator==(const Finding&) const = default;
};

} // namespace tavero
