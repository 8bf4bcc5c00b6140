#pragma once

#include <string>
#include <vector>

namespace tavero {

// What the environment of this program says of the desktop's entries: the folders that hold them,
// and the locale in which their names are read.
std::vector<std::string> hostApplicationFolders();
std::string hostLocale();

} // namespace tavero
