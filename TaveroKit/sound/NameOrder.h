#pragma once

#include <string_view>

namespace tavero {

// Whether a name stands before another in a list, as the user's language orders them; upper and
// lower case are the same. Texts are UTF-8; any bytes are accepted. Defined once a platform.
bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b);

} // namespace tavero
