#pragma once

#include <string>
#include <string_view>

namespace tavero {

// The name of a device without white space at its ends, that of all scripts included. UTF-8; other
// bytes stay as they are.
std::string deviceName(std::string_view text);

} // namespace tavero
