#include "platform/linux/processes/HostDesktop.h"

#include "platform/linux/processes/DesktopFolders.h"

#include <cstdlib>
#include <string_view>

namespace tavero {

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::vector<std::string> hostApplicationFolders() {
    return applicationFolders(variable("HOME"), variable("XDG_DATA_HOME"),
                              variable("XDG_DATA_DIRS"));
}

std::string hostLocale() {
    return std::string(
        localeOfMessages(variable("LC_ALL"), variable("LC_MESSAGES"), variable("LANG")));
}

} // namespace tavero
