#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tavero {

// Where the history belongs by convention. Absent if neither folder is known.
//   dataHome  XDG_DATA_HOME; empty if it isn't set, and one that is not absolute doesn't count
//   home      HOME, likewise
std::optional<std::filesystem::path> historyFile(std::string_view dataHome, std::string_view home);

} // namespace tavero
