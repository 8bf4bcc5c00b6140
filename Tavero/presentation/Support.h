#pragma once

#include <string_view>

namespace tavero::Support {

// The web page where a person can thank the makers with money: TAVERO_SUPPORT_PAGE of the build.
std::string_view koFi();

} // namespace tavero::Support
