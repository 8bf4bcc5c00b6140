#pragma once

#include <cstdlib>
#include <string_view>

namespace tavero {

// A variable of this program's environment. Empty if it isn't set.
inline std::string_view environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace tavero
